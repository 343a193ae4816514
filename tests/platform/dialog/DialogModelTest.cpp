// Dialog models and the modal runners: controls the user may use, number edits, grids over
// placeholders, and dialogs played from a script.
#include "dialog/ScriptedRunner.h"
#include "dialog/WaitIndicator.h"
#include "text/Translator.h"

#include <gtest/gtest.h>

namespace {

CDialogTemplate Resource() {
    return {500,
            L"Proba",
            300,
            200,
            {{1, EControlKind::Button, L"OK", 10, 170, 60, 20},
             {2, EControlKind::Button, L"Cancel", 80, 170, 60, 20},
             {1006, EControlKind::Button, L"Brisi", 150, 170, 60, 20},
             {1038, EControlKind::CheckBox, L"Sa kopiranjem", 10, 140, 100, 16},
             {1020, EControlKind::NumberEdit, L"", 10, 110, 60, 18},
             {1022, EControlKind::Static, L"$$0 - ", 80, 110, 30, 18},
             {1036, EControlKind::ListBox, L"", 120, 100, 100, 40},
             {1017, EControlKind::Frame, L"Grid1", 10, 10, 280, 87}}};
}

/// A presenter that records what it hears and refuses OK while its edit is out of range.
class Presenter : public CDialogPresenter {
public:
    Presenter() : CDialogPresenter(Resource()) {}
    std::vector<std::string> heard;
    int starts = 0;

protected:
    void OnInitDialog() override {
        ++starts;
        Dialog().Translate();
        Dialog().SetRange(1020, 1.0, 5000.0);
        Dialog().SetValue(1020, 20.0);
        CreateGrid(1017).SetRowCount(3);
    }
    void OnOK() override {
        if (Dialog().ValidateNumberEdits())
            EndDialog(IDOK);
    }
    void OnButton(int id) override {
        heard.push_back("button " + std::to_string(id) +
                        (Dialog().IsChecked(1038) ? " checked" : ""));
        if (id == 1006)
            heard.push_back("menu " + std::to_string(TrackPopupMenu({{36866, L"Rastuce"}}, 1006)));
    }
    void OnMenuCommand(int command) override { heard.push_back("cmd " + std::to_string(command)); }
};

} // namespace

TEST(DialogModel, ControlsTheUserCannotReachIgnoreHimAndTextsAreTranslatedOnce) {
    ClTranslator::AddTranslation(ClTranslator::Engleski, L"Brisi", L"Delete");
    ClTranslator::SetLanguage(ClTranslator::Engleski);
    Presenter p;
    p.Start();
    ClTranslator::SetLanguage(ClTranslator::Srpski);
    ClTranslator::ClearCatalogs();
    CDialogModel& d = p.Dialog();
    EXPECT_EQ(d.GetText(1006), L"Delete");
    EXPECT_EQ(d.GetText(1022), L"0 - "); // shown as it stands
    EXPECT_EQ(d.GetText(1020), L"20");
    EXPECT_FALSE(d.IsVisible(1017));
    EXPECT_EQ(d.Grid(1017).GetHeight(), 85); // four whole rows and 5 pixels

    EXPECT_TRUE(d.UserClick(1038));
    EXPECT_TRUE(d.UserClick(1006));
    d.Enable(1006, false);
    EXPECT_FALSE(d.UserClick(1006));
    d.Enable(1006, true);
    d.Show(1006, false);
    EXPECT_FALSE(d.UserClick(1006));
    EXPECT_FALSE(d.UserClick(1022));     // a static text is no button
    EXPECT_FALSE(d.UserSelect(1036, 0)); // an empty list
    EXPECT_EQ(p.heard,
              (std::vector<std::string>{"button 1038 checked", "button 1006 checked", "menu 0"}));
}

TEST(DialogModel, NumberEditsAcceptOnlyNumbersWithinTheirRange) {
    CScriptedRunner runner;
    runner.Install();
    Presenter p;
    p.Start();
    CDialogModel& d = p.Dialog();
    for (const wchar_t* text : {L"0.5", L"5000.1", L"abc", L"", L"12x", L"nan", L"1e999"}) {
        d.UserSetText(1020, text);
        EXPECT_FALSE(d.GetValue(1020).has_value()) << CString(text).ToUtf8();
    }
    d.UserClick(IDOK);
    EXPECT_FALSE(d.IsEnded());
    ASSERT_EQ(runner.Messages().size(), 1u);
    EXPECT_EQ(runner.Messages()[0].text, L"Unesite broj izmedju 1 i 5000.");
    EXPECT_EQ(runner.Messages()[0].caption, L"Greska");
    EXPECT_EQ(d.GetFocus(), 1020);
    d.UserSetText(1020, L" 5000 ");
    EXPECT_EQ(d.GetValue(1020), 5000.0);
    d.UserClick(IDOK);
    EXPECT_EQ(d.GetResult(), IDOK);
    EXPECT_FALSE(d.UserClick(1006)); // an ended dialog takes nothing more
}

TEST(ScriptedRunner, PlaysScenesInOrderAndCancelsWhatTheScriptLeavesOpen) {
    CScriptedRunner runner;
    runner.Install();
    runner.Expect(500, [](CDialogPresenter& d) { d.Dialog().UserClick(IDOK); })
        .Expect(500,
                [](CDialogPresenter& d) {
                    d.Dialog().UserClick(1006); // asks for a popup and gets 36866
                    d.Dialog().UserMenuCommand(36865);
                })
        .AnswerPopup(36866)
        .AnswerMessageBox(2);
    Presenter p;
    EXPECT_EQ(p.DoModal(), IDOK);
    EXPECT_EQ(p.DoModal(), IDCANCEL);
    EXPECT_EQ(p.starts, 2);
    EXPECT_EQ(p.heard, (std::vector<std::string>{"button 1006", "menu 36866", "cmd 36865"}));
    EXPECT_EQ(CVortaMessageBox::MessageBoxW(L"Pitanje", L"Upozorenje", 0, {L"A", L"B"}), 2);
    EXPECT_EQ(CVortaMessageBox::MessageBoxW(L"Opet", L"Upozorenje"), CVortaMessageBox::IDOK);
    EXPECT_TRUE(runner.Done());
    EXPECT_TRUE(runner.Errors().empty());

    // A dialog nobody expected is cancelled and reported.
    EXPECT_EQ(p.DoModal(), IDCANCEL);
    EXPECT_EQ(runner.Errors().size(), 1u);
}

TEST(ModalRunner, WithoutARunnerADialogIsCancelledAndWithoutAnIndicatorWorkGoesOn) {
    ASSERT_EQ(CModalRunner::Get(), nullptr);
    Presenter p;
    EXPECT_EQ(p.DoModal(), IDCANCEL);
    EXPECT_EQ(p.starts, 1);

    struct Indicator : CWaitIndicator {
        std::vector<int64_t> steps;
        void Begin(const CString&, int64_t) override {}
        bool Step(int64_t done) override {
            steps.push_back(done);
            return done < 2048;
        }
        void End() override { steps.push_back(-1); }
    } indicator;
    {
        CWaitProgress silent(L"Generisanje");
        EXPECT_TRUE(silent.Step(0));
    }
    CWaitIndicator::Install(&indicator);
    {
        CWaitProgress progress(L"Generisanje", 5000);
        int64_t i = 0;
        while (progress.Step(i))
            ++i;
        EXPECT_EQ(i, 2048); // asked every 1024 steps; cancelled at the third question
    }
    CWaitIndicator::Install(nullptr);
    EXPECT_EQ(indicator.steps, (std::vector<int64_t>{0, 1024, 2048, -1}));
}
