// When the dialog exchanges data with its controls: a control that a host adds to the template by
// DoDataExchange() is read at these moments.
#include "DialogTest.h"

namespace {

using test::Dialog;
using test::network;
using testing::ElementsAre;

class ExchangingDialog : public MRLRAntennaDlg {
public:
    ExchangingDialog(const tesk5::DiagDevice& device, test::ControlJournal& journal)
        : MRLRAntennaDlg(device), m_journal(journal) {}

protected:
    void DoDataExchange(CDataExchange* exchange) override {
        m_journal.note(exchange->m_bSaveAndValidate ? "exchange read" : "exchange show");
        MRLRAntennaDlg::DoDataExchange(exchange);
    }

private:
    test::ControlJournal& m_journal;
};

class ExchangeOfTheDialog : public test::DialogTest {
protected:
    void exchange(std::vector<test::Step> steps) {
        startRadio({network("Lab", 42U)});
        const test::DialogDriver driver(std::move(steps));
        const tesk5::DiagDevice card = device();
        ExchangingDialog dialog(card, journal());
        dialog.DoModal();
        EXPECT_EQ(driver.stepsLeft(), 0U);
    }
};

TEST_F(ExchangeOfTheDialog, ReadsTwiceBeforeTheListAndTwiceBeforeTheTimer) {
    exchange({[&](Dialog&) {
        EXPECT_THAT(journal().entries({"exchange", "list empty", "tips on", "meter range"}),
                    ElementsAre("exchange show", "list empty", "tips on", "exchange read",
                                "exchange read", "list empty", "exchange read", "exchange read",
                                "meter range 0 100"));
    }});
}

TEST_F(ExchangeOfTheDialog, ReadsTwiceWhenTheMeterHasStopped) {
    exchange({[&](Dialog& dialog) {
        dialog.GetDlgItem(IDC_FINISH)->EnableWindow(FALSE);
        journal().clear();
        dialog.SendMessage(WM_COMMAND, MAKEWPARAM(IDC_FAIL, BN_CLICKED),
                           reinterpret_cast<LPARAM>(dialog.GetDlgItem(IDC_FAIL)->m_hWnd));
        EXPECT_THAT(journal().entries(), ElementsAre("meter 0", "text 1041 0%", "exchange read",
                                                     "exchange read", "enable 1015"));
    }});
}

TEST_F(ExchangeOfTheDialog, ReadsOnceInEachTickBeforeItMeasures) {
    exchange({[&](Dialog& dialog) {
        journal().clear();
        test::tick(dialog);
        const std::vector<std::string> order = journal().entries({"exchange", "sleep"});
        ASSERT_GE(order.size(), 2U);
        EXPECT_EQ(order[0], "exchange read");
        EXPECT_EQ(order[1], "sleep 100");
        EXPECT_EQ(journal().count("exchange read"), 1);
    }});
}

} // namespace
