// The host's message box: the installed presenter, or a headless default on standard error.
#include "host/MessageBox.h"

#include <cstdio>

namespace {

CVortaMessageBox::Presenter& CurrentPresenter() {
    static CVortaMessageBox::Presenter presenter;
    return presenter;
}

/// Without a window there is nobody to ask: the box is written to standard error and
/// answered with IDOK, or with the first of its custom buttons. A question therefore never
/// gets a Yes from a headless host.
int Headless(const CString& text, const CString& caption, const std::vector<CString>& buttons) {
    std::fprintf(stderr, "%s\n%s\n", caption.ToUtf8().c_str(), text.ToUtf8().c_str());
    std::fflush(stderr);
    return buttons.empty() ? CVortaMessageBox::IDOK : 1;
}

} // namespace

void CVortaMessageBox::SetPresenter(Presenter presenter) {
    CurrentPresenter() = std::move(presenter);
}

int CVortaMessageBox::MessageBoxW(const CString& text, const CString& caption, unsigned type) {
    return MessageBoxW(text, caption, type, {});
}

int CVortaMessageBox::MessageBoxW(const CString& text, const CString& caption, unsigned type,
                                  const std::vector<CString>& buttons) {
    if (CurrentPresenter())
        return CurrentPresenter()(text, caption, type, buttons);
    return Headless(text, caption, buttons);
}
