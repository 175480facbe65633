// Hang-tag label making driven through its real controls: the two source dialogs and the switch
// between them, the statements they send, tags appended to the list, the list kept on this
// machine between runs, deleting and clearing.
#include <QCoreApplication>
#include <QFile>
#include <QPushButton>
#include <QSettings>
#include <map>

#include "framework/DBGridEh.h"
#include "framework/Screenshot.h"
#include "labels/Frmqxck299.h"
#include "labels/Frmqxck299db.h"
#include "labels/Frmqxck299f.h"
#include "labels/LabelList.h"
#include "tests/labels/LabelsFixture.h"

namespace qx::test {
namespace {

class Qxck299Test : public LabelsTest {
protected:
    TQXCK299* openLabels() {
        auto* screen = new TQXCK299(nullptr);
        screen->Tag = 299;
        screen->InitForm(record(299));
        return screen;
    }
    static void closeScreen(TQXCK299* screen) {
        screen->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    // A step for the receipt dialog.
    void onReceipt(std::function<void(TQXCK299DB*)> drive) {
        steps.push_back([drive](TFrm_Base* d) {
            auto* dialog = dynamic_cast<TQXCK299DB*>(d);
            EXPECT_NE(dialog, nullptr) << "expected the receipt dialog, got " << d->objectName().toStdString();
            if (!dialog) return int(mrCancel);
            drive(dialog);
            return dialog->ModalResult();
        });
    }
    void onStyle(std::function<void(TQXCK299F*)> drive) {
        steps.push_back([drive](TFrm_Base* d) {
            auto* dialog = dynamic_cast<TQXCK299F*>(d);
            EXPECT_NE(dialog, nullptr) << "expected the style dialog, got " << d->objectName().toStdString();
            if (!dialog) return int(mrCancel);
            drive(dialog);
            return dialog->ModalResult();
        });
    }
    static void typeStyle(TQXCK299F* dialog, const QString& style) {
        dialog->EDIT1->setText(style);
        emit dialog->EDIT1->editingFinished();
    }
    static bool typeCount(TDBGridEh* grid, int size, const QString& text) {
        auto* model = grid->model();
        TColumnEh* column = grid->ColumnByField("S" + QString::number(size));
        return model->setData(model->index(grid->DataSet()->CurrentRow(), column->Index()), text, Qt::EditRole);
    }
    // A receipt's lines come in the order the database reads them (the statement orders nothing),
    // and the tags follow the lines as the grid shows them. The lines as "style/colour", in the
    // grid's order:
    static QStringList lineKeys(TClientDataSet* lines) {
        QStringList keys;
        for (int row = 0; row < lines->RecordCount(); ++row)
            keys << lines->CellValue(row, lines->FieldIndex("K_ID")).toString() + "/" +
                        lines->CellValue(row, lines->FieldIndex("COL_ID")).toString();
        return keys;
    }
    // The tags one making gives: each line's own tags, line after line as the grid showed them.
    // The grid must show exactly the lines given.
    static QStringList tagsInGridOrder(const QStringList& keys, const std::map<QString, QStringList>& tagsOfLine) {
        QStringList given;
        for (const auto& [key, tags] : tagsOfLine) given << key;
        EXPECT_EQ(sorted(keys), given) << "the grid shows other lines than expected";
        QStringList out;
        for (const QString& key : keys)
            if (auto at = tagsOfLine.find(key); at != tagsOfLine.end()) out << at->second;
        return out;
    }
    static QStringList sorted(QStringList list) {
        list.sort();
        return list;
    }
    // Makes the line of a style and colour the grid's current one.
    static bool goToLine(TClientDataSet* lines, const QString& style, const QString& colour) {
        return lines->Locate("K_ID;COL_ID", QVariantList{style, colour});
    }
    static QStringList barcodes(TQXCK299* screen) {
        QStringList out;
        for (int row = 0; row < screen->AdoQry_Main->RecordCount(); ++row)
            out << screen->AdoQry_Main->CellValue(row, screen->AdoQry_Main->FieldIndex("tm")).toString();
        return out;
    }
    QString listFile() const { return programDir.filePath("CLTZ"); }
    int rememberedSource() const {
        return QSettings(programDir.filePath("VARDO.DLL"), QSettings::IniFormat).value("sys/tmbq", -1).toInt();
    }
};

TEST_F(Qxck299Test, TheScreenShowsItsCaptionsAndTheNoteOnWhatIsKept) {
    auto* screen = openLabels();
    EXPECT_EQ(screen->Caption(), "吊牌标签制作");
    EXPECT_EQ(screen->Act_Locate->text(), "生成");
    EXPECT_EQ(screen->Act_Delete->text(), "删除");
    EXPECT_EQ(screen->Label2->text(), "系统提示：系统仅在<本机>保留最近一次生成的标签，如无需保留请点击 ");
    EXPECT_EQ(screen->Label1->text(), "清空表格暂存标签");
    EXPECT_EQ(screen->DBGridEh->VisibleTitles(),
              (QStringList{"条码", "款号", "名称", "单位", "尺码", "色码", "颜色", "品牌", "吊牌价", "成份"}));
    closeScreen(screen);
}

TEST_F(Qxck299Test, FromTheNewestReceiptItsLinesBecomeTagsPerSizeAndCount) {
    auto* screen = openLabels();
    QStringList lines;
    onReceipt([&lines](TQXCK299DB* d) {
        EXPECT_EQ(d->Caption(), "从进货单制作吊牌标签");
        EXPECT_EQ(d->AdoQry_Main->RecordCount(), 2);
        EXPECT_EQ(d->AdoQry_Main->FieldByName("noid")->AsString(), "R0002");
        ASSERT_EQ(d->AdoQry_Body->RecordCount(), 2);
        lines = lineKeys(d->AdoQry_Body);
        // Size titles from the size group; sizes after the last one in use hidden.
        EXPECT_EQ(d->DBGridEh2->VisibleTitles(),
                  (QStringList{"款号", "名称", "色码", "颜色", "尺码|S", "尺码|M", "尺码|L", "尺码|XL", "尺码|2XL"}));
        EXPECT_FALSE(qx::saveScreenshot(d, "hang_tags_from_receipt").isEmpty());
        d->BTN_2->click();
    });
    screen->Act_Locate->trigger();
    // K2 red 2/0/1 in S, M, L (style + colour + size mark), K1 red one M (its free barcode).
    EXPECT_EQ(barcodes(screen), tagsInGridOrder(lines, {{"K2/01", {"P2R1", "P2R1", "P2R3"}}, {"K1/01", {"FREE-M-01"}}}));
    EXPECT_EQ(sorted(barcodes(screen)), (QStringList{"FREE-M-01", "P2R1", "P2R1", "P2R3"}));
    EXPECT_EQ(screen->DBGridEh->FooterTexts().first(), "共4张");
    EXPECT_EQ(statements(Call::Kind::OpenSql),
              (std::vector<QString>{golden("qxck299.sql", "receipts"), golden("qxck299.sql", "receipt lines")}));
    for (const auto& c : calls) EXPECT_EQ(c.funcNo, "299");
    closeScreen(screen);
}

TEST_F(Qxck299Test, TheSizeTitlesFollowTheCurrentLine) {
    exec("INSERT INTO d1006 (M_ID, M_NAME, M0, M1, M2) VALUES ('02', '裤装', '28', '30', '32')");
    exec("INSERT INTO d1800 (K_ID, PP_ID, M_ID, WL_NAME, DW_NAME, PFJ, TMI, PP_KID) VALUES "
         "('KP', 'P1', '02', '西裤', '条', 299, 2, 'KP')");
    exec("INSERT INTO d1801 VALUES ('KP01', 'KP', '01')");
    exec("INSERT INTO D8101A VALUES ('R0002', 'KP01', 'KP', '01', '01', 1, 1, 1, 0, 0, 0, 0, 0, 0, 0, 100, 300, '')");
    auto* screen = openLabels();
    onReceipt([](TQXCK299DB* d) {
        EXPECT_TRUE(d->gtime->isActive());
        EXPECT_EQ(d->gtime->interval(), 500);
        ASSERT_TRUE(d->AdoQry_Body->Locate("K_ID", "KP"));
        d->gtimeTimer(d->gtime);
        EXPECT_EQ(d->DBGridEh2->ColumnByField("S0")->Title, "尺码|28");
        EXPECT_EQ(d->DBGridEh2->ColumnByField("S3")->Title, "尺码|");  // a position the group leaves unnamed
        ASSERT_TRUE(d->AdoQry_Body->Locate("K_ID", "K2"));
        d->gtimeTimer(d->gtime);
        EXPECT_EQ(d->DBGridEh2->ColumnByField("S0")->Title, "尺码|S");
        EXPECT_EQ(d->DBGridEh2->ColumnByField("S3")->Title, "尺码|XL");
        d->BTN_2->click();
    });
    screen->Act_Locate->trigger();
    EXPECT_FALSE(screen->FromReceipt->gtime->isActive());  // only while the dialog is shown
    QStringList trousers;
    for (int row = 0; row < screen->AdoQry_Main->RecordCount(); ++row)
        if (screen->AdoQry_Main->CellValue(row, screen->AdoQry_Main->FieldIndex("K_ID")).toString() == "KP")
            trousers << screen->AdoQry_Main->CellValue(row, screen->AdoQry_Main->FieldIndex("M")).toString();
    EXPECT_EQ(trousers, (QStringList{"28", "30", "32"}));
    closeScreen(screen);
}

TEST_F(Qxck299Test, AShopWithoutReceiptsShowsEmptyGridsAndMakesNothing) {
    exec("DELETE FROM D8101A");
    exec("DELETE FROM D8101");
    auto* screen = openLabels();
    onReceipt([this](TQXCK299DB* d) {
        EXPECT_TRUE(d->AdoQry_Main->IsEmpty());
        EXPECT_TRUE(d->AdoQry_Body->IsEmpty());
        d->btn_Delete->click();
        d->BTN_2->click();
        EXPECT_TRUE(sink->texts().isEmpty());
    });
    screen->Act_Locate->trigger();
    EXPECT_TRUE(screen->AdoQry_Main->IsEmpty());
    closeScreen(screen);
}

TEST_F(Qxck299Test, WithWarehouseRightsTheReceiptsJoinTheUsersWarehouses) {
    G_CHKCK = 1;
    auto* screen = openLabels();
    onReceipt([](TQXCK299DB* d) { d->btn_cancel->click(); });
    screen->Act_Locate->trigger();
    EXPECT_EQ(statements(Call::Kind::OpenSql).front(), golden("qxck299.sql", "receipts with rights"));
    closeScreen(screen);
}

TEST_F(Qxck299Test, TheCountsCanBeChangedAndMakingAgainAppends) {
    auto* screen = openLabels();
    QStringList lines;
    onReceipt([&lines](TQXCK299DB* d) {
        lines = lineKeys(d->AdoQry_Body);
        ASSERT_TRUE(goToLine(d->AdoQry_Body, "K2", "01"));  // K2 red: 2, 0, 1
        EXPECT_TRUE(typeCount(d->DBGridEh2, 1, "3"));
        d->BTN_1->click();  // stays open
        EXPECT_EQ(d->ModalResult(), mrNone);
        EXPECT_TRUE(typeCount(d->DBGridEh2, 0, "0"));
        d->BTN_2->click();
    });
    screen->Act_Locate->trigger();
    const QStringList first =
        tagsInGridOrder(lines, {{"K2/01", {"P2R1", "P2R1", "P2R2", "P2R2", "P2R2", "P2R3"}}, {"K1/01", {"FREE-M-01"}}});
    const QStringList second = tagsInGridOrder(lines, {{"K2/01", {"P2R2", "P2R2", "P2R2", "P2R3"}}, {"K1/01", {"FREE-M-01"}}});
    EXPECT_EQ(barcodes(screen), first + second);
    EXPECT_EQ(sorted(barcodes(screen)), (QStringList{"FREE-M-01", "FREE-M-01", "P2R1", "P2R1", "P2R2", "P2R2", "P2R2",
                                                     "P2R2", "P2R2", "P2R2", "P2R3", "P2R3"}));
    closeScreen(screen);
}

TEST_F(Qxck299Test, ACountMustBeAWholeNumberFromZeroTo9999) {
    auto* screen = openLabels();
    onReceipt([this](TQXCK299DB* d) {
        ASSERT_TRUE(goToLine(d->AdoQry_Body, "K2", "01"));  // K2 red: 2 in size S
        EXPECT_FALSE(typeCount(d->DBGridEh2, 0, "abc"));
        EXPECT_FALSE(typeCount(d->DBGridEh2, 0, "-1"));
        EXPECT_FALSE(typeCount(d->DBGridEh2, 0, "10000"));
        EXPECT_FALSE(typeCount(d->DBGridEh2, 0, QString(10000, '9')));
        EXPECT_EQ(d->AdoQry_Body->FieldByName("S0")->AsInteger(), 2);  // nothing lost
        EXPECT_EQ(sink->texts(), (QStringList{"'abc' 不是有效的整数", "吊牌数量必须在0到9999之间!",
                                              "吊牌数量必须在0到9999之间!", "'" + QString(10000, '9') + "' 不是有效的整数"}));
        d->btn_cancel->click();
    });
    screen->Act_Locate->trigger();
    EXPECT_TRUE(screen->AdoQry_Main->IsEmpty());
    closeScreen(screen);
}

TEST_F(Qxck299Test, AReceiptIsFoundByItsNumberAndAQuoteStaysInItsText) {
    auto* screen = openLabels();
    onReceipt([this](TQXCK299DB* d) {
        d->Edit1->setText("R0001");
        d->btn_ref->click();
        EXPECT_EQ(d->AdoQry_Main->RecordCount(), 1);
        EXPECT_EQ(d->AdoQry_Body->FieldByName("K_ID")->AsString(), "K0");
        EXPECT_TRUE(sent(golden("qxck299.sql", "find receipt")));
        d->Edit1->setText("R'1; DELETE FROM D8101; --");
        d->btn_ref->click();
        EXPECT_TRUE(d->AdoQry_Main->IsEmpty());
        EXPECT_TRUE(d->AdoQry_Body->IsEmpty());
        EXPECT_EQ(scalar("SELECT COUNT(*) FROM D8101"), "2");
        d->Edit1->setText(QString(10000, 'R'));
        d->btn_ref->click();
        EXPECT_TRUE(d->AdoQry_Main->IsEmpty());
        EXPECT_TRUE(sink->errors().isEmpty()) << sink->errors().join("\n").toStdString();
        d->btn_cancel->click();
    });
    screen->Act_Locate->trigger();
    closeScreen(screen);
}

TEST_F(Qxck299Test, DeletingLinesOfTheReceiptAsksFirst) {
    auto* screen = openLabels();
    onReceipt([this](TQXCK299DB* d) {
        ASSERT_TRUE(goToLine(d->AdoQry_Body, "K2", "01"));
        sink->queueAnswer(false);
        d->btn_Delete->click();
        EXPECT_EQ(d->AdoQry_Body->RecordCount(), 2);
        sink->queueAnswer(true);
        d->btn_Delete->click();
        EXPECT_EQ(lineKeys(d->AdoQry_Body), QStringList{"K1/01"});
        EXPECT_EQ(sink->texts(), (QStringList{"是否删除所选记录", "是否删除所选记录"}));
        d->BTN_2->click();
    });
    screen->Act_Locate->trigger();
    EXPECT_EQ(barcodes(screen), QStringList{"FREE-M-01"});
    closeScreen(screen);
}

TEST_F(Qxck299Test, TheSwitchButtonOpensTheOtherDialogAtOnceAndTheChoiceIsRemembered) {
    auto* screen = openLabels();
    onReceipt([](TQXCK299DB* d) { d->BTN_3->click(); });
    onStyle([](TQXCK299F* d) {
        typeStyle(d, "K3");
        d->AdoQry_Main->First();
        EXPECT_TRUE(typeCount(d->DBGridEh, 4, "2"));
        d->Button3->click();
    });
    screen->Act_Locate->trigger();
    EXPECT_EQ(barcodes(screen), (QStringList{"K35R", "K35R"}));
    EXPECT_EQ(screen->tmbq, 1);
    closeScreen(screen);
    EXPECT_EQ(rememberedSource(), 1);

    // The next run starts with the style dialog, and switches back.
    auto* again = openLabels();
    onStyle([](TQXCK299F* d) { d->Button4->click(); });
    onReceipt([](TQXCK299DB* d) { d->btn_cancel->click(); });
    again->Act_Locate->trigger();
    EXPECT_EQ(again->tmbq, 0);
    closeScreen(again);
    EXPECT_EQ(rememberedSource(), 0);
}

TEST_F(Qxck299Test, ByStyleEveryColourIsListedWithCountsZero) {
    QSettings(programDir.filePath("VARDO.DLL"), QSettings::IniFormat).setValue("sys/tmbq", 1);
    auto* screen = openLabels();
    onStyle([this](TQXCK299F* d) {
        typeStyle(d, "K2");
        EXPECT_EQ(d->WL_NAME->text(), "夹克");
        EXPECT_EQ(d->PP_NAME->text(), "海风");
        EXPECT_EQ(d->AdoQry_Main->RecordCount(), 2);
        EXPECT_EQ(d->AdoQry_Main->FieldByName("S0")->AsInteger(), 0);
        EXPECT_EQ(d->DBGridEh->VisibleTitles(),
                  (QStringList{"款号", "名称", "色码", "颜色", "尺码|S", "尺码|M", "尺码|L", "尺码|XL", "尺码|2XL"}));
        EXPECT_TRUE(sent(golden("qxck299.sql", "style")));
        EXPECT_TRUE(sent(golden("qxck299.sql", "style lines")));
        EXPECT_FALSE(qx::saveScreenshot(d, "hang_tags_by_style").isEmpty());
        d->Button2->click();  // all counts zero: nothing made
        d->btn_cancel->click();
    });
    screen->Act_Locate->trigger();
    EXPECT_TRUE(screen->AdoQry_Main->IsEmpty());
    closeScreen(screen);
}

TEST_F(Qxck299Test, AnUnknownStyleOrNoStyleIsSaid) {
    QSettings(programDir.filePath("VARDO.DLL"), QSettings::IniFormat).setValue("sys/tmbq", 1);
    auto* screen = openLabels();
    onStyle([this](TQXCK299F* d) {
        d->Button2->click();
        typeStyle(d, "NOPE");
        typeStyle(d, "K2'; DELETE FROM d1800; --");
        typeStyle(d, QString(10000, 'K'));
        EXPECT_TRUE(d->AdoQry_Main->IsEmpty());
        EXPECT_EQ(sink->texts(), (QStringList{"请输入款号!", "不存在的款号!请重新输入!", "不存在的款号!请重新输入!",
                                              "不存在的款号!请重新输入!"}));
        EXPECT_EQ(scalar("SELECT COUNT(*) FROM d1800"), "4");
        d->btn_cancel->click();
    });
    screen->Act_Locate->trigger();
    closeScreen(screen);
}

TEST_F(Qxck299Test, ClosingAndReopeningShowsTheSameRows) {
    auto* screen = openLabels();
    onReceipt([](TQXCK299DB* d) { d->BTN_2->click(); });
    screen->Act_Locate->trigger();
    const QString before = qx::labels::LabelFileText(screen->AdoQry_Main);
    const QStringList shown = screen->DBGridEh->DumpText().split('\n');
    closeScreen(screen);
    auto* again = openLabels();
    EXPECT_EQ(qx::labels::LabelFileText(again->AdoQry_Main), before);
    EXPECT_EQ(again->DBGridEh->DumpText().split('\n'), shown);
    EXPECT_EQ(again->AdoQry_Main->RecordCount(), 4);
    closeScreen(again);
}

TEST_F(Qxck299Test, ClearingAndClosingLeavesAnEmptyList) {
    auto* screen = openLabels();
    onReceipt([](TQXCK299DB* d) { d->BTN_2->click(); });
    screen->Act_Locate->trigger();
    screen->Label1->click();
    EXPECT_TRUE(screen->AdoQry_Main->IsEmpty());
    EXPECT_EQ(screen->DBGridEh->FooterTexts().first(), "共0张");
    closeScreen(screen);
    QFile f(listFile());
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_EQ(QString::fromUtf8(f.readAll()), "QXCK-LABELS 1\n" + qx::labels::LabelFieldNames().join('\t') + "\nEND 0\n");
    auto* again = openLabels();
    EXPECT_TRUE(again->AdoQry_Main->IsEmpty());
    // The filter action empties the list too.
    onReceipt([](TQXCK299DB* d) { d->BTN_2->click(); });
    again->Act_Locate->trigger();
    again->Act_Filter->trigger();
    EXPECT_TRUE(again->AdoQry_Main->IsEmpty());
    closeScreen(again);
}

TEST_F(Qxck299Test, ACutListFileIsReportedAndTheListStartsEmpty) {
    QFile f(listFile());
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write("QXCK-LABELS 1\ntm\tK_ID");
    f.close();
    auto* screen = openLabels();
    EXPECT_TRUE(screen->AdoQry_Main->IsEmpty());
    ASSERT_EQ(sink->texts().size(), 1);
    EXPECT_TRUE(sink->texts().first().endsWith("，标签列表从空表开始。")) << sink->texts().first().toStdString();
    closeScreen(screen);
}

TEST_F(Qxck299Test, DeleteTakesTheCurrentRowOrAsksForSeveral) {
    auto* screen = openLabels();
    onReceipt([](TQXCK299DB* d) { d->BTN_2->click(); });
    screen->Act_Locate->trigger();
    QStringList left = barcodes(screen);
    ASSERT_TRUE(screen->AdoQry_Main->Locate("tm", "P2R3"));
    left.removeAt(screen->AdoQry_Main->CurrentRow());
    screen->Act_Delete->trigger();
    EXPECT_EQ(barcodes(screen), left);
    EXPECT_EQ(sorted(left), (QStringList{"FREE-M-01", "P2R1", "P2R1"}));
    EXPECT_TRUE(sink->texts().isEmpty());
    EXPECT_EQ(screen->DBGridEh->FooterTexts().first(), "共3张");

    screen->DBGridEh->selectRow(0);
    screen->DBGridEh->selectionModel()->select(screen->DBGridEh->model()->index(2, 0),
                                               QItemSelectionModel::Select | QItemSelectionModel::Rows);
    sink->queueAnswer(false);
    screen->Act_Delete->trigger();
    EXPECT_EQ(screen->AdoQry_Main->RecordCount(), 3);
    sink->queueAnswer(true);
    screen->Act_Delete->trigger();
    EXPECT_EQ(barcodes(screen), QStringList{left[1]});  // the row between the two selected
    EXPECT_EQ(sink->texts(), (QStringList{"是否删除所选记录", "是否删除所选记录"}));
    closeScreen(screen);
}

}  // namespace
}  // namespace qx::test
