// Dialog templates made into dialog models: controls' state, grids, focus and modal result.
#include "dialog/DialogModel.h"

#include "diag/Assert.h"
#include "host/MessageBox.h"
#include "text/Translator.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cwchar>

void IDialogHandler::OnEditChange(int) {}
void IDialogHandler::OnSelChange(int) {}
void IDialogHandler::OnMenuCommand(int) {}

namespace {

/// Reads a whole text as a number ("%lg" with nothing but blanks after it).
std::optional<double> ParseNumber(const CString& text) {
    const wchar_t* begin = text.c_str();
    wchar_t* end = nullptr;
    errno = 0;
    const double value = std::wcstod(begin, &end);
    if (end == begin || errno == ERANGE || !std::isfinite(value))
        return std::nullopt;
    while (*end == L' ' || *end == L'\t')
        ++end;
    if (*end != L'\0')
        return std::nullopt;
    return value;
}

CString FormatFixed(double value, int decimals) {
    return CString::Formatted(L"%.*f", std::clamp(decimals, 0, 15), value);
}

} // namespace

CDialogModel::CDialogModel(CDialogTemplate tmpl) : m_tmpl(std::move(tmpl)) {
    m_strCaption = m_tmpl.caption;
    m_controls.reserve(m_tmpl.controls.size());
    for (const CControlSpec& resource : m_tmpl.controls) {
        CDialogControl control;
        control.resource = resource;
        control.text = resource.text;
        control.enabled = resource.enabled;
        control.visible = resource.visible;
        m_controls.push_back(std::move(control));
    }
}

void CDialogModel::AddObserver(IDialogObserver* observer) {
    if (observer != nullptr &&
        std::find(m_observers.begin(), m_observers.end(), observer) == m_observers.end())
        m_observers.push_back(observer);
}

void CDialogModel::RemoveObserver(IDialogObserver* observer) {
    m_observers.erase(std::remove(m_observers.begin(), m_observers.end(), observer),
                      m_observers.end());
}

void CDialogModel::Notify(int id) {
    const std::vector<IDialogObserver*> observers = m_observers;
    for (IDialogObserver* observer : observers)
        observer->ControlChanged(id);
}

void CDialogModel::SetCaption(const CString& caption) {
    m_strCaption = caption;
    Notify(0);
}

void CDialogModel::Translate() {
    m_strCaption = ClTranslator::Translate(m_strCaption);
    for (CDialogControl& control : m_controls)
        control.text = ClTranslator::Translate(control.text);
    Notify(0);
}

// ------------------------------------------------------------------------ controls

CDialogControl* CDialogModel::Find(int id) {
    if (id == kStaticId)
        return nullptr;
    const auto it = std::find_if(m_controls.begin(), m_controls.end(),
                                 [id](const CDialogControl& c) { return c.resource.id == id; });
    return it == m_controls.end() ? nullptr : &*it;
}

const CDialogControl* CDialogModel::Find(int id) const {
    return const_cast<CDialogModel*>(this)->Find(id);
}

CDialogControl& CDialogModel::Control(int id) {
    CDialogControl* pControl = Find(id);
    VASSERT(pControl);
    return *pControl;
}

const CDialogControl& CDialogModel::Control(int id) const {
    return const_cast<CDialogModel*>(this)->Control(id);
}

void CDialogModel::SetText(int id, const CString& text) {
    Control(id).text = text;
    Notify(id);
}

void CDialogModel::Enable(int id, bool enabled) {
    CDialogControl& control = Control(id);
    if (control.enabled == enabled)
        return;
    control.enabled = enabled;
    Notify(id);
}

void CDialogModel::Show(int id, bool visible) {
    CDialogControl& control = Control(id);
    if (control.visible == visible)
        return;
    control.visible = visible;
    Notify(id);
}

void CDialogModel::SetCheck(int id, bool checked) {
    Control(id).checked = checked;
    Notify(id);
}

void CDialogModel::SetIcon(int id, int icon) {
    Control(id).icon = icon;
    Notify(id);
}

void CDialogModel::ResetContent(int id) {
    CDialogControl& control = Control(id);
    control.items.clear();
    control.curSel = -1;
    Notify(id);
}

int CDialogModel::AddString(int id, const CString& text) {
    CDialogControl& control = Control(id);
    control.items.push_back(text);
    Notify(id);
    return static_cast<int>(control.items.size()) - 1;
}

void CDialogModel::SetCurSel(int id, int index) {
    CDialogControl& control = Control(id);
    control.curSel = index >= 0 && index < static_cast<int>(control.items.size()) ? index : -1;
    if (control.resource.kind == EControlKind::ComboBox)
        control.text =
            control.curSel >= 0 ? control.items[static_cast<size_t>(control.curSel)] : CString();
    Notify(id);
}

CString CDialogModel::GetItemText(int id, int index) const {
    const CDialogControl& control = Control(id);
    return index >= 0 && index < static_cast<int>(control.items.size())
               ? control.items[static_cast<size_t>(index)]
               : CString();
}

void CDialogModel::SetRange(int id, double minValue, double maxValue) {
    CDialogControl& control = Control(id);
    control.minValue = std::min(minValue, maxValue);
    control.maxValue = std::max(minValue, maxValue);
}

void CDialogModel::SetDecimals(int id, int decimals) {
    Control(id).decimals = std::clamp(decimals, 0, 15);
}

void CDialogModel::SetValue(int id, double value) {
    SetText(id, FormatFixed(value, Control(id).decimals));
}

std::optional<double> CDialogModel::GetValue(int id) const {
    const CDialogControl& control = Control(id);
    const std::optional<double> value = ParseNumber(control.text);
    if (!value)
        return std::nullopt;
    if (control.resource.kind == EControlKind::NumberEdit &&
        (*value < control.minValue || *value > control.maxValue))
        return std::nullopt;
    return value;
}

bool CDialogModel::ValidateNumberEdits() {
    for (const CDialogControl& control : m_controls) {
        if (control.resource.kind != EControlKind::NumberEdit || !control.visible ||
            GetValue(control.resource.id))
            continue;
        SetFocus(control.resource.id);
        CString text;
        text.Format(ClTranslator::Translate(L"Unesite broj izmedju %s i %s.").c_str(),
                    FormatFixed(control.minValue, control.decimals).c_str(),
                    FormatFixed(control.maxValue, control.decimals).c_str());
        CVortaMessageBox::MessageBoxW(text, ClTranslator::Translate(L"Greska"),
                                      CVortaMessageBox::MB_OK | CVortaMessageBox::MB_ICONSTOP);
        return false;
    }
    return true;
}

// ------------------------------------------------------------------------ grids

CGridModel& CDialogModel::CreateGrid(int id, bool cutToRows) {
    CDialogControl& placeholder = Control(id);
    placeholder.visible = false;
    auto grid = std::make_unique<CGridModel>(id);
    int height = placeholder.resource.height;
    if (cutToRows)
        height = (height / CGridModel::kDefaultRowHeight) * CGridModel::kDefaultRowHeight + 5;
    grid->SetRect(placeholder.resource.x, placeholder.resource.y, placeholder.resource.width,
                  height);
    m_grids.push_back(std::move(grid));
    Notify(id);
    return *m_grids.back();
}

bool CDialogModel::HasGrid(int id) const {
    return std::any_of(m_grids.begin(), m_grids.end(),
                       [id](const auto& grid) { return grid->GetId() == id; });
}

CGridModel& CDialogModel::Grid(int id) {
    const auto it = std::find_if(m_grids.begin(), m_grids.end(),
                                 [id](const auto& grid) { return grid->GetId() == id; });
    CGridModel* pGrid = it == m_grids.end() ? nullptr : it->get();
    VASSERT(pGrid);
    return *pGrid;
}

const CGridModel& CDialogModel::Grid(int id) const {
    return const_cast<CDialogModel*>(this)->Grid(id);
}

// ------------------------------------------------------------------------ focus and result

void CDialogModel::SetFocus(int id) {
    m_nFocus = id;
    Notify(0);
}

void CDialogModel::EndDialog(int result) {
    m_nResult = result;
    const std::vector<IDialogObserver*> observers = m_observers;
    for (IDialogObserver* observer : observers)
        observer->DialogEnded(result);
}

// ------------------------------------------------------------------------ the user's actions

bool CDialogModel::Usable(const CDialogControl* control) const {
    return control != nullptr && control->enabled && control->visible && !IsEnded();
}

bool CDialogModel::UserClick(int id) {
    CDialogControl* control = Find(id);
    if (!Usable(control))
        return false;
    if (control->resource.kind == EControlKind::CheckBox)
        SetCheck(id, !control->checked);
    else if (control->resource.kind != EControlKind::Button)
        return false;
    if (m_pHandler != nullptr)
        m_pHandler->OnCommand(id);
    return true;
}

bool CDialogModel::UserSetText(int id, const CString& text) {
    CDialogControl* control = Find(id);
    if (!Usable(control) || (control->resource.kind != EControlKind::Edit &&
                             control->resource.kind != EControlKind::NumberEdit))
        return false;
    SetText(id, text);
    if (m_pHandler != nullptr)
        m_pHandler->OnEditChange(id);
    return true;
}

bool CDialogModel::UserSelect(int id, int index) {
    CDialogControl* control = Find(id);
    if (!Usable(control) ||
        (control->resource.kind != EControlKind::ListBox &&
         control->resource.kind != EControlKind::ComboBox) ||
        index < 0 || index >= static_cast<int>(control->items.size()))
        return false;
    SetCurSel(id, index);
    if (m_pHandler != nullptr)
        m_pHandler->OnSelChange(id);
    return true;
}

void CDialogModel::UserMenuCommand(int command) {
    if (command != 0 && !IsEnded() && m_pHandler != nullptr)
        m_pHandler->OnMenuCommand(command);
}
