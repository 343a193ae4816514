#pragma once
// CQtDialogView: the window of a dialog model, laid out from its template: every control at
// its rectangle in pixels, grids over their placeholders. The view draws the model's state
// and hands the user's actions to the model; it knows nothing of what the dialog does.
#include "dialog/DialogModel.h"

#include <QDialog>

#include <functional>
#include <map>
#include <vector>

class CQtGridView;

class CQtDialogView : public QDialog, public IDialogObserver {
    Q_OBJECT
public:
    explicit CQtDialogView(CDialogModel& dialog, QWidget* parent = nullptr);
    ~CQtDialogView() override;

    CDialogModel& Dialog() { return m_dialog; }
    /// The widget of a control (null when the template has none with that id).
    QWidget* Widget(int id) const;
    /// The view of the grid created over the placeholder `id` (null when there is none).
    CQtGridView* GridView(int id) const;
    /// Applies waiting structural changes of every grid.
    void SyncGrids();
    /// What the close box does when the dialog has no Cancel button to press: the runner
    /// gives the presenter's Cancel.
    void SetCloseHandler(std::function<void()> close) { m_close = std::move(close); }

    void ControlChanged(int id) override;
    void DialogEnded(int result) override;

    /// The close box and Escape: the dialog's Cancel, as a user would press it.
    void reject() override;
    /// Enter: the default button, when it can be pressed.
    void accept() override;

private:
    QWidget* MakeWidget(const CControlSpec& resource);
    void Refresh(int index);
    void RefreshAll();
    void MakeGrids();
    void ShowFocus();

    CDialogModel& m_dialog;
    std::vector<QWidget*> m_widgets; // by the control's index in the template
    std::map<int, CQtGridView*> m_grids;
    std::function<void()> m_close;
    bool m_bRefreshing = false;
};
