// What every document list and its filter do, run for each kind by the kind's own test files:
// the head statement with and without warehouse rights, the lines of the current document, the
// filter's condition and description, reversed dates, approval columns and tint, the entry's
// configuration and deleting.
#include "tests/documents/DocumentListTest.h"

namespace qx::test {
namespace {

using qx::dataop::Call;

QString thisMonth(const QString& headTable) {
    return " WHERE (" + headTable + ".BDATE>='2026-03-01') AND (" + headTable +
           ".BDATE<='2026-03-18') ";
}

}  // namespace

// ---- the list

TEST_P(DocumentListTest, OpensOnThisMonthWithTheHeadStatementAndTheFirstDocumentsLines) {
    TDocumentList* list = openKind();
    EXPECT_EQ(list->Caption(), GetParam().caption);
    const auto opened = statements(Call::Kind::OpenSql);
    ASSERT_GE(opened.size(), 2u);
    EXPECT_TRUE(sameStatements(golden("Head") + thisMonth(GetParam().headTable), opened[0]));
    EXPECT_EQ(listed(list), QStringList({"N0301", "N0305", "N0305B", "N0306"}));
    const QString current = list->AdoQry_Main->FieldByName("noid")->AsString();
    EXPECT_TRUE(sameStatements(golden("Lines", {{"number", "'" + current + "'"}}), opened[1]));
    EXPECT_EQ(list->Lab_Condition->text(), " ●开单日期:03-01 至 03-18 (18天)");
    delete list;
}

TEST_P(DocumentListTest, TheLinesOfTheCurrentDocumentAreShownBelow) {
    const ListKind& k = GetParam();
    if (k.code == 211)
        addSaleLine("N0305", "K01", "01", "01", "1,2,0,0,0,0,0,0,0,0", "90", "270");
    else
        addReturnLine(k.lineTable, "N0305", "K01", "01", "01", "1,2,0,0,0,0,0,0,0,0", "90", "270");
    TDocumentList* list = openKind();
    ASSERT_TRUE(list->AdoQry_Main->Locate("noid", "N0305"));
    EXPECT_EQ(list->AdoQry_Detail->RecordCount(), 1);
    EXPECT_EQ(qx::documents::lineText(list->AdoQry_Detail, 0, "K_ID"), "K01");
    EXPECT_DOUBLE_EQ(list->AdoQry_Detail->FieldByName("SMONEY")->AsFloat(), 270);
    EXPECT_DOUBLE_EQ(list->AdoQry_Detail->FieldByName("SJ")->AsFloat(), 90);
    delete list;
}

TEST_P(DocumentListTest, WithoutApprovalTheApprovalColumnsAreGoneAndNothingIsTinted) {
    TDocumentList* list = openKind();
    EXPECT_EQ(list->DBGridEh->VisibleTitles(), GetParam().titles);
    for (int r = 0; r < list->AdoQry_Main->RecordCount(); ++r) {
        TCellParams params;
        params.Row = r;
        params.Background = QColor(Qt::white);
        list->DBGridEh->OnGetCellParams(list->DBGridEh->Columns(0), params);
        EXPECT_EQ(params.Background, QColor(Qt::white)) << r;
    }
    delete list;
}

TEST_P(DocumentListTest, InApprovalModeDocumentsNotYetEffectiveAreTinted) {
    G_SK = 1;
    TDocumentList* list = openKind();
    const QStringList titles = list->DBGridEh->VisibleTitles();
    EXPECT_TRUE(titles.contains("审批"));
    EXPECT_TRUE(titles.contains("审批日期"));
    QStringList tinted;
    for (int r = 0; r < list->AdoQry_Main->RecordCount(); ++r) {
        TCellParams params;
        params.Row = r;
        params.Background = QColor(Qt::white);
        list->DBGridEh->OnGetCellParams(list->DBGridEh->Columns(0), params);
        if (params.Background == QColor(0x80, 0xFF, 0xFF))
            tinted << qx::documents::lineText(list->AdoQry_Main, r, "noid");
        else
            EXPECT_EQ(params.Background, QColor(Qt::white));
    }
    EXPECT_EQ(tinted, QStringList{"N0305B"});
    delete list;
}

TEST_P(DocumentListTest, WithWarehouseRightsOtherWarehousesDocumentsNeverAppear) {
    G_CHKCK = 1;
    TDocumentList* list = openKind();
    ASSERT_FALSE(statements(Call::Kind::OpenSql).empty());
    EXPECT_TRUE(sameStatements(golden("HeadWithRights") + thisMonth(GetParam().headTable),
                               statements(Call::Kind::OpenSql).front()));
    EXPECT_EQ(listed(list), QStringList({"N0301", "N0305"}));
    delete list;
    list = openKind([](TDocumentFilter* f) { f->CK_ID->setText("02"); });
    EXPECT_TRUE(list->AdoQry_Main->IsEmpty());
    delete list;
}

TEST_P(DocumentListTest, TheEntryScreenIsConfiguredWithTheListsTexts) {
    TDocumentList* list = openKind();
    TDocumentEntry* e = list->Entry;
    ASSERT_NE(e, nullptr);
    EXPECT_TRUE(sameStatements(golden("Head"), e->HeadSql));
    EXPECT_TRUE(sameStatements(golden("Lines", {{"number", "%s"}}), e->BodySql));
    EXPECT_EQ(e->DeleteSql, golden("Delete", {{"number", "%S"}}));
    const bool sale = GetParam().code == 211;
    EXPECT_EQ(e->QtyFields, sale ? "S0,S1,S2,S3,S4,S5,S6,S7,S8,S9,STOT,ZK"
                                 : "S0,S1,S2,S3,S4,S5,S6,S7,S8,S9,STOT");
    EXPECT_EQ(e->PriceFields, sale ? "dj,sj,ODJ" : "dj,sj");
    EXPECT_EQ(e->MoneyFields, sale ? "money,smoney,OMONEY" : "money,smoney");
    EXPECT_EQ(e->WlField, "wl_id");
    EXPECT_EQ(e->KeyField, "NOID");
    EXPECT_EQ(e->FuncNo, QString::number(GetParam().code));
    EXPECT_EQ(e->PartnerLink->FuncNo, QString::number(GetParam().code));
    EXPECT_EQ(list->Filter->FuncNo, QString::number(GetParam().code));
    delete list;
}

TEST_P(DocumentListTest, DeletingADocumentRemovesItsLinesAndRepostsTheStock) {
    const ListKind& k = GetParam();
    if (k.code == 211)
        addSaleLine("N0301", "K01", "01", "01", "2,0,0,0,0,0,0,0,0,0", "90", "180");
    else
        addReturnLine(k.lineTable, "N0301", "K01", "01", "01", "2,0,0,0,0,0,0,0,0,0", "90", "180");
    EXPECT_EQ(stock("K0101", "01"), k.code == 212 ? "2" : "-2");
    TDocumentList* list = openKind([](TDocumentFilter* f) {
        f->Edit1->setText("N0301");
        f->Edit2->setText("N0301");
    });
    ASSERT_EQ(listed(list), QStringList{"N0301"});
    sink->queueAnswer(true);
    list->Act_Delete->trigger();
    EXPECT_EQ(lastBatch(), golden("Delete", {{"number", "'N0301'"}}));
    EXPECT_EQ(count("SELECT COUNT(*) FROM " + k.headTable + " WHERE NOID='N0301'"), 0);
    EXPECT_EQ(count("SELECT COUNT(*) FROM " + k.lineTable + " WHERE NOID='N0301'"), 0);
    EXPECT_EQ(stock("K0101", "01"), "0");
    delete list;
}

// ---- the filter

TEST_P(DocumentFilterTest, ReversedDatesAreRefusedWithTheDialogsMessageAndNothingIsQueried) {
    TDocumentList* list = openKind([](TDocumentFilter* f) {
        f->BDATE->SetText("2026-03-10");
        f->EDATE->SetText("2026-03-02");
    });
    EXPECT_EQ(sink->texts(), QStringList{GetParam().reversedDates});
    EXPECT_EQ(list->Filter->focusWidget(), static_cast<TDocumentFilter*>(list->Filter)->BDATE);
    EXPECT_NE(list->Filter->ModalResult(), mrOk);
    EXPECT_TRUE(statements(Call::Kind::OpenSql).empty());
    delete list;
}

TEST_P(DocumentFilterTest, OneDayCountsAsOneDayAndListsThatDaysDocuments) {
    TDocumentList* list = openKind([](TDocumentFilter* f) {
        f->BDATE->SetText("2026-03-05");
        f->EDATE->SetText("2026-03-05");
    });
    EXPECT_EQ(static_cast<TDocumentFilter*>(list->Filter)->titDATE->text(), "(1天)");
    EXPECT_EQ(list->Lab_Condition->text(), " ●开单日期:03-05 至 03-05 (1天)");
    EXPECT_TRUE(sameStatements(filterGolden("OneDay"), list->Condition));
    EXPECT_EQ(listed(list), QStringList({"N0305", "N0305B"}));
    delete list;
}

TEST_P(DocumentFilterTest, ThisMonthIsThePresetPeriod) {
    TDocumentList* list = openKind();
    EXPECT_EQ(static_cast<TDocumentFilter*>(list->Filter)->titDATE->text(), "(18天)");
    EXPECT_TRUE(sameStatements(filterGolden("ThisMonth"), list->Condition));
    delete list;
}

TEST_P(DocumentFilterTest, EitherEndOfTheNumberRangeWorksAlone) {
    TDocumentList* list = openKind([](TDocumentFilter* f) { f->Edit2->setText("N0305"); });
    EXPECT_TRUE(sameStatements(filterGolden("UpperOnly"), list->Condition));
    EXPECT_EQ(list->Lab_Condition->text(),
              " ●开单日期:03-01 至 03-18 (18天)" + GetParam().numberDescription + " 至 N0305");
    EXPECT_EQ(listed(list), QStringList({"N0301", "N0305"}));
    delete list;
    list = openKind([](TDocumentFilter* f) { f->Edit1->setText("N0305B"); });
    EXPECT_TRUE(sameStatements(filterGolden("LowerOnly"), list->Condition));
    EXPECT_EQ(listed(list), QStringList({"N0305B", "N0306"}));
    delete list;
}

TEST_P(DocumentFilterTest, EveryConditionAddsToConditionAndDescription) {
    const QString partner = GetParam().partner;
    TDocumentList* list = openKind([partner](TDocumentFilter* f) {
        f->KH_ID->setText(" " + partner + " ");
        f->CK_ID->setText("01");
        f->Edit1->setText("N0300");
        f->Edit2->setText("N0399");
    });
    EXPECT_TRUE(sameStatements(filterGolden("Everything"), list->Condition));
    EXPECT_EQ(list->Lab_Condition->text(),
              " ●开单日期:03-01 至 03-18 (18天)" + GetParam().partnerDescription + partner +
                  " ●仓库：01" + GetParam().numberDescription + "N0300 至 N0399");
    EXPECT_EQ(listed(list), QStringList({"N0301", "N0305"}));
    delete list;
}

TEST_P(DocumentFilterTest, QuotesInFilterFieldsAreTextsNotTheEndOfOne) {
    TDocumentList* list = openKind([](TDocumentFilter* f) {
        f->KH_ID->setText("x' OR '1");
        f->Edit2->setText("N'9");
    });
    EXPECT_TRUE(list->Condition.contains("KH_gys_ID = 'x'' OR ''1')"))
        << list->Condition.toStdString();
    EXPECT_TRUE(list->Condition.contains(".NOID<='N''9')")) << list->Condition.toStdString();
    EXPECT_TRUE(sink->errors().isEmpty());
    EXPECT_EQ(list->AdoQry_Main->RecordCount(), 0);
    delete list;
}

TEST_P(DocumentFilterTest, AVeryLongNumberIsCutAndUnknownCodesFindNothing) {
    TDocumentList* list = openKind([](TDocumentFilter* f) {
        f->Edit1->setText(QString(10000, '9'));
        EXPECT_LE(f->Edit1->text().size(), 30);
        f->Edit1->clear();
        f->CK_ID->setText("ZZ");
        EXPECT_LE(f->CK_ID->text().size(), 4);
    });
    EXPECT_TRUE(sink->errors().isEmpty());
    EXPECT_TRUE(list->AdoQry_Main->IsEmpty());
    delete list;
}

}  // namespace qx::test
