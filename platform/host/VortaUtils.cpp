// Refresh of the document's views through the handler of the host.
#include "host/VortaUtils.h"

namespace {

CVortaUtils::ViewsHandler& Handler() {
    static CVortaUtils::ViewsHandler handler;
    return handler;
}

} // namespace

void CVortaUtils::UpdateViews(int a, int b, int c, int d, int e) {
    if (Handler())
        Handler()(a, b, c, d, e);
}

void CVortaUtils::SetViewsHandler(ViewsHandler handler) {
    Handler() = std::move(handler);
}
