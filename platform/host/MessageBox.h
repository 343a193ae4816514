#pragma once
// CVortaMessageBox: the host's message box. A host installs a presenter; without one the
// headless default writes caption and text to standard error and answers IDOK to a standard
// box and 1 (its first button) to a box with custom buttons.
#include "framework/String.h"

#include <functional>
#include <vector>

class CVortaMessageBox {
public:
    // Buttons, icons and answers, with the values of the usual message box.
    enum : unsigned {
        MB_OK = 0x0,
        MB_OKCANCEL = 0x1,
        MB_YESNOCANCEL = 0x3,
        MB_YESNO = 0x4,
        MB_ICONSTOP = 0x10,
        MB_ICONQUESTION = 0x20,
        MB_ICONWARNING = 0x30,
        MB_ICONINFORMATION = 0x40,
        MB_SYSTEMMODAL = 0x1000,
    };
    enum : int { IDOK = 1, IDCANCEL = 2, IDYES = 6, IDNO = 7 };

    /// The presenter: text, caption, type and (for the custom form) button captions; it
    /// returns the answer (an ID value, or the 1-based index of the pressed custom button).
    using Presenter = std::function<int(const CString& text, const CString& caption, unsigned type,
                                        const std::vector<CString>& buttons)>;
    static void SetPresenter(Presenter presenter);

    /// A standard box; returns IDOK, IDCANCEL, IDYES or IDNO.
    static int MessageBoxW(const CString& text, const CString& caption, unsigned type = MB_OK);
    /// A box with custom button captions; returns the 1-based index of the pressed button.
    static int MessageBoxW(const CString& text, const CString& caption, unsigned type,
                           const std::vector<CString>& buttons);
};
