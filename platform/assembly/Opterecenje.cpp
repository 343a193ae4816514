// The factory of the load interface, registered by the loads module.
#include "assembly/Opterecenje.h"

namespace {

AOpterecenjeInterface::Factory g_factory = nullptr;

} // namespace

void AOpterecenjeInterface::RegisterFactory(Factory factory) {
    g_factory = factory;
}

AOpterecenjeInterface::Factory AOpterecenjeInterface::GetFactory() {
    return g_factory;
}

std::unique_ptr<AOpterecenjeInterface> AOpterecenjeInterface::Create(CGraficki* object) {
    if (g_factory == nullptr || dynamic_cast<COpterecenje*>(object) == nullptr)
        return nullptr;
    return std::unique_ptr<AOpterecenjeInterface>(g_factory(object));
}
