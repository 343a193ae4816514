#pragma once
// The windowing library of the host as data, neutral of any window toolkit: dialog templates
// (resources), the state of a dialog's controls, its grids, focus and modal result.
//
// A template names the dialog (its resource id), its caption and size, and its controls by
// resource id with their kind, caption and rectangle in pixels. Static texts that no code
// addresses carry the id -1 (kStaticId). A dialog model made from a template holds every
// control's state: text, enabled, visible and checked, the items and selection of list and
// combo boxes, and the range, decimals and value of range-checked number edits. Grids are
// created over placeholder controls and kept by the dialog.
//
// Texts are kept as the program writes them; Translate passes the caption and every
// control's text through the translator, as a dialog is translated when it opens.
//
// Like a grid, a dialog has a handler (its presenter, which hears the user's actions) and
// observers (views, which hear what to redraw). The User* functions are what a view, a
// scripted host or a test calls when the user acts.
#include "framework/String.h"
#include "grid/GridModel.h"

#include <memory>
#include <optional>
#include <vector>

enum class EControlKind { Button, Static, CheckBox, Edit, NumberEdit, ListBox, ComboBox, Frame };

/// A control as a template declares it.
struct CControlSpec {
    int id = -1;
    EControlKind kind = EControlKind::Static;
    CString text;
    int x = 0, y = 0, width = 0, height = 0;
    bool visible = true;
    bool enabled = true;
    /// The default button of the dialog (Enter presses it).
    bool isDefault = false;
};

/// A dialog resource: id, caption, size in pixels and controls in tab order.
struct CDialogTemplate {
    int id = 0;
    CString caption;
    int width = 0;
    int height = 0;
    std::vector<CControlSpec> controls;
};

/// The state of one control.
struct CDialogControl {
    CControlSpec resource;
    CString text;
    bool enabled = true;
    bool visible = true;
    bool checked = false;
    int icon = -1;              // buttons: number of the icon shown beside the caption
    std::vector<CString> items; // list and combo boxes
    int curSel = -1;            // list and combo boxes
    double minValue = 0.0;      // number edits: range and decimals
    double maxValue = 0.0;
    int decimals = 0;
};

/// Answers of a modal dialog.
enum : int { IDOK = 1, IDCANCEL = 2 };

class IDialogHandler {
public:
    virtual ~IDialogHandler() = default;
    /// A button was pressed or a check box clicked (after it toggled).
    virtual void OnCommand(int id) = 0;
    /// The text of an edit changed.
    virtual void OnEditChange(int id);
    /// The selection of a list or combo box changed.
    virtual void OnSelChange(int id);
    /// A command of a popup menu was chosen.
    virtual void OnMenuCommand(int command);
};

class IDialogObserver {
public:
    virtual ~IDialogObserver() = default;
    /// A control changed; id 0 for the caption, focus or several controls at once.
    virtual void ControlChanged(int id) = 0;
    /// The dialog ended with a modal result.
    virtual void DialogEnded(int result) = 0;
};

class CDialogModel {
public:
    static constexpr int kStaticId = -1;

    explicit CDialogModel(CDialogTemplate tmpl);
    CDialogModel(const CDialogModel&) = delete;
    CDialogModel& operator=(const CDialogModel&) = delete;

    int GetTemplateId() const { return m_tmpl.id; }
    const CDialogTemplate& GetTemplate() const { return m_tmpl; }
    const CString& GetCaption() const { return m_strCaption; }
    void SetCaption(const CString& caption);
    /// Passes the caption and the text of every control through the translator.
    void Translate();

    void SetHandler(IDialogHandler* handler) { m_pHandler = handler; }
    void AddObserver(IDialogObserver* observer);
    void RemoveObserver(IDialogObserver* observer);

    // ------------------------------------------------------------- controls
    int GetControlCount() const { return static_cast<int>(m_controls.size()); }
    /// Controls in template order, statics included.
    const CDialogControl& GetControlAt(int index) const { return m_controls.at(index); }
    bool HasControl(int id) const { return Find(id) != nullptr; }
    /// The control with that id; a presenter addressing a control its template lacks is a
    /// fault of the program (asserts "pControl").
    CDialogControl& Control(int id);
    const CDialogControl& Control(int id) const;

    CString GetText(int id) const { return Control(id).text; }
    void SetText(int id, const CString& text);
    void Enable(int id, bool enabled);
    bool IsEnabled(int id) const { return Control(id).enabled; }
    void Show(int id, bool visible);
    bool IsVisible(int id) const { return Control(id).visible; }
    void SetCheck(int id, bool checked);
    bool IsChecked(int id) const { return Control(id).checked; }
    void SetIcon(int id, int icon);

    // list and combo boxes
    void ResetContent(int id);
    int AddString(int id, const CString& text);
    void SetCurSel(int id, int index);
    int GetCurSel(int id) const { return Control(id).curSel; }
    int GetItemCount(int id) const { return static_cast<int>(Control(id).items.size()); }
    CString GetItemText(int id, int index) const;

    // range-checked number edits
    void SetRange(int id, double minValue, double maxValue);
    void SetDecimals(int id, int decimals);
    /// Shows the value with the edit's decimals.
    void SetValue(int id, double value);
    /// The edit's value when its text is a number within the range; nothing otherwise.
    std::optional<double> GetValue(int id) const;
    /// Checks every visible number edit; the first whose text is not a number within its range
    /// gets the focus and a message box "Unesite broj izmedju %s i %s." (caption "Greska"),
    /// and false is returned.
    bool ValidateNumberEdits();

    // ------------------------------------------------------------- grids
    /// Creates a grid over the placeholder control `id` (hidden, its rectangle given to the
    /// grid); with cutToRows the height is cut to whole default rows plus 5 pixels.
    CGridModel& CreateGrid(int id, bool cutToRows = true);
    bool HasGrid(int id) const;
    /// The grid created over the placeholder (asserts "pGrid" when there is none).
    CGridModel& Grid(int id);
    const CGridModel& Grid(int id) const;
    int GetGridCount() const { return static_cast<int>(m_grids.size()); }
    CGridModel& GetGridAt(int index) { return *m_grids.at(index); }
    const CGridModel& GetGridAt(int index) const { return *m_grids.at(index); }

    // ------------------------------------------------------------- focus and result
    /// The control with the focus (a grid's placeholder id for a grid); 0 when none.
    void SetFocus(int id);
    int GetFocus() const { return m_nFocus; }
    /// Ends the modal run with the result; the dialog stays as it was for the caller to read.
    void EndDialog(int result);
    bool IsEnded() const { return m_nResult.has_value(); }
    int GetResult() const { return m_nResult.value_or(0); }
    /// Makes an ended dialog runnable again (a runner calls it before the dialog starts).
    void Restart() { m_nResult.reset(); }

    // ------------------------------------------------------------- what the user does
    /// Presses a button or clicks a check box (toggling it first); ignored when the control is
    /// disabled or hidden. True when the handler heard it.
    bool UserClick(int id);
    /// Types the text into an edit (replacing what it held).
    bool UserSetText(int id, const CString& text);
    /// Selects an item of a list or combo box.
    bool UserSelect(int id, int index);
    /// Chooses a command of a popup menu the presenter showed.
    void UserMenuCommand(int command);

private:
    CDialogControl* Find(int id);
    const CDialogControl* Find(int id) const;
    bool Usable(const CDialogControl* control) const;
    void Notify(int id);

    CDialogTemplate m_tmpl;
    CString m_strCaption;
    std::vector<CDialogControl> m_controls;
    std::vector<std::unique_ptr<CGridModel>> m_grids;
    IDialogHandler* m_pHandler = nullptr;
    std::vector<IDialogObserver*> m_observers;
    int m_nFocus = 0;
    std::optional<int> m_nResult;
};
