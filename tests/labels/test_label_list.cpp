// The label list: tag rows per size and count, barcodes by each style's rule, and the label
// file kept between runs (identical after reopening; a cut or foreign file gives an empty list
// and a reason).
#include <QFile>

#include "framework/DataSet.h"
#include "labels/LabelList.h"
#include "tests/labels/LabelsFixture.h"

namespace qx::test {
namespace {

class LabelListTest : public LabelsTest {
protected:
    void SetUp() override {
        LabelsTest::SetUp();
        list = std::make_unique<TClientDataSet>();
        qx::labels::DefineLabelList(list.get());
    }
    // Source lines through the real statement.
    std::unique_ptr<TClientDataSet> open(const QString& sql) {
        auto ds = std::make_unique<TClientDataSet>();
        opensql(ds.get(), "299", sql, 0, 0, {}, {}, false, "1");
        return ds;
    }
    // The barcodes of a style's red line, size columns 0..4.
    QStringList barcodesOf(const QString& style) {
        auto lines = open(qx::labels::StyleLinesSql(style));
        EXPECT_TRUE(lines->Locate("COL_ID", "01"));
        QStringList codes;
        for (int k = 0; k < 5; ++k) {
            TField* f = lines->FieldByName("TM" + QString::number(k));
            codes << (f->IsNull() ? QString("<null>") : f->AsString());
        }
        return codes;
    }
    QStringList column(const char* field) {
        QStringList out;
        for (list->First(); !list->Eof(); list->Next()) out << list->FieldByName(field)->AsString();
        return out;
    }
    QString file() const { return programDir.filePath("CLTZ"); }
    void write(const QByteArray& bytes) {
        QFile f(file());
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(bytes);
    }
    std::unique_ptr<TClientDataSet> list;
};

TEST_F(LabelListTest, CountsTwoZeroOneGiveTwoTagsOfTheFirstSizeAndOneOfTheThird) {
    auto lines = open(qx::labels::ReceiptLinesSql("R0002"));
    ASSERT_TRUE(lines->Locate("K_ID", "K2"));
    EXPECT_EQ(qx::labels::AppendTags(lines.get(), list.get()), 4);  // three of K2 and one of K1
    QStringList k2;
    for (list->First(); !list->Eof(); list->Next())
        if (list->FieldByName("K_ID")->AsString() == "K2")
            k2 << list->FieldByName("m_index")->AsString() + ":" + list->FieldByName("M")->AsString();
    EXPECT_EQ(k2, (QStringList{"0:S", "0:S", "2:L"}));
}

TEST_F(LabelListTest, EveryTagRowCarriesTheLineData) {
    auto lines = open(qx::labels::ReceiptLinesSql("R0002"));
    qx::labels::AppendTags(lines.get(), list.get());
    ASSERT_TRUE(list->Locate("K_ID", "K2"));
    EXPECT_EQ(list->FieldByName("tm")->AsString(), "P2R1");
    EXPECT_EQ(list->FieldByName("WL_NAME")->AsString(), "夹克");
    EXPECT_EQ(list->FieldByName("DW_NAME")->AsString(), "件");
    EXPECT_EQ(list->FieldByName("col_ID")->AsString(), "01");
    EXPECT_EQ(list->FieldByName("COL_NAME")->AsString(), "红色");
    EXPECT_EQ(list->FieldByName("PP")->AsString(), "海风");
    EXPECT_EQ(list->FieldByName("cl")->AsString(), "100%棉");
    EXPECT_DOUBLE_EQ(list->FieldByName("PFJ")->AsFloat(), 199.0);
}

TEST_F(LabelListTest, LinesWithoutCountsMakeNoTagsAndRowsAreAppended) {
    auto style = open(qx::labels::StyleLinesSql("K2"));  // counts 0
    EXPECT_EQ(qx::labels::AppendTags(style.get(), list.get()), 0);
    auto receipt = open(qx::labels::ReceiptLinesSql("R0002"));
    qx::labels::AppendTags(receipt.get(), list.get());
    qx::labels::AppendTags(receipt.get(), list.get());
    EXPECT_EQ(list->RecordCount(), 8);
}

TEST_F(LabelListTest, RuleZeroPrintsTheStyleCodeForTheFirstSizeOnly) {
    EXPECT_EQ(barcodesOf("K0"), (QStringList{"P0", "<null>", "<null>", "<null>", "<null>"}));
    auto lines = open(qx::labels::ReceiptLinesSql("R0001"));
    qx::labels::AppendTags(lines.get(), list.get());
    EXPECT_EQ(column("tm"), (QStringList{"P0", ""}));
}

TEST_F(LabelListTest, RuleOneTakesTheStoredBarcodeOfTheSizeTheLargestWhenSeveral) {
    EXPECT_EQ(barcodesOf("K1"), (QStringList{"6901234567892", "FREE-M-01", "<null>", "<null>", "<null>"}));
}

TEST_F(LabelListTest, RuleTwoIsStyleThenColourMarkThenSizeMark) {
    EXPECT_EQ(barcodesOf("K2"), (QStringList{"P2R1", "P2R2", "P2R3", "P2R4", "P2R5"}));
}

TEST_F(LabelListTest, RuleThreeIsStyleThenSizeMarkThenColourMarkAndAStyleWithoutBarcodeCodeUsesItsOwn) {
    EXPECT_EQ(barcodesOf("K3"), (QStringList{"K31R", "K32R", "K33R", "K34R", "K35R"}));
}

TEST_F(LabelListTest, TheSourceStatementsAreTheKeptOnes) {
    EXPECT_EQ(qx::labels::ReceiptLinesSql("R0002"), golden("qxck299.sql", "receipt lines"));
    EXPECT_EQ(qx::labels::StyleLinesSql("K2"), golden("qxck299.sql", "style lines"));
}

TEST_F(LabelListTest, QuotesInCodesStayInsideTheirText) {
    EXPECT_TRUE(qx::labels::ReceiptLinesSql("R'1").endsWith("WHERE (D8101A.NOID = 'R''1')"));
    auto lines = open(qx::labels::StyleLinesSql("K2'; DELETE FROM d1800; --"));
    EXPECT_TRUE(lines->IsEmpty());
    EXPECT_EQ(scalar("SELECT COUNT(*) FROM d1800"), "4");
}

TEST_F(LabelListTest, TheSavedListReopensIdentical) {
    auto lines = open(qx::labels::ReceiptLinesSql("R0002"));
    qx::labels::AppendTags(lines.get(), list.get());
    // Awkward texts survive: tabs, line breaks, backslashes, quotes, an empty barcode.
    list->First();
    list->Edit();
    list->FieldByName("WL_NAME")->SetAsString("a\tb\nc\\d 'e' \"f\"\r");
    list->FieldByName("tm")->Clear();
    list->Post();
    qx::labels::SaveLabelFile(file(), list.get());

    TClientDataSet reopened;
    const auto result = qx::labels::LoadLabelFile(file(), &reopened);
    ASSERT_TRUE(result.ok) << result.problem.toStdString();
    ASSERT_EQ(reopened.RecordCount(), list->RecordCount());
    ASSERT_EQ(reopened.FieldNames(), list->FieldNames());
    for (int row = 0; row < list->RecordCount(); ++row)
        for (int f = 0; f < list->FieldCount(); ++f)
            EXPECT_EQ(reopened.CellValue(row, f), list->CellValue(row, f)) << "row " << row << " field " << f;
    EXPECT_EQ(qx::labels::LabelFileText(&reopened), qx::labels::LabelFileText(list.get()));
}

TEST_F(LabelListTest, AMissingFileIsAnEmptyListWithoutComplaint) {
    const auto result = qx::labels::LoadLabelFile(file(), list.get());
    EXPECT_TRUE(result.ok);
    EXPECT_TRUE(list->IsEmpty());
}

struct BadFile {
    const char* what;
    QByteArray bytes;
    const char* reason;
};

class BrokenLabelFileTest : public LabelListTest, public ::testing::WithParamInterface<BadFile> {};

TEST_P(BrokenLabelFileTest, GivesAnEmptyListAndTheReason) {
    auto lines = open(qx::labels::ReceiptLinesSql("R0002"));
    qx::labels::AppendTags(lines.get(), list.get());  // rows that must not survive the load
    write(GetParam().bytes);
    const auto result = qx::labels::LoadLabelFile(file(), list.get());
    EXPECT_FALSE(result.ok);
    EXPECT_TRUE(result.problem.contains(GetParam().reason)) << result.problem.toStdString();
    EXPECT_TRUE(list->IsEmpty());
    EXPECT_EQ(list->FieldNames(), qx::labels::LabelFieldNames());
}

QByteArray goodText() {
    TClientDataSet ds;
    qx::labels::DefineLabelList(&ds);
    for (int i = 0; i < 3; ++i) {
        ds.Append();
        ds.FieldByName("tm")->SetAsString("P2R" + QString::number(i));
        ds.FieldByName("PFJ")->SetAsFloat(99.5);
        ds.Post();
    }
    return qx::labels::LabelFileText(&ds).toUtf8();
}

INSTANTIATE_TEST_SUITE_P(
    Files, BrokenLabelFileTest,
    ::testing::Values(BadFile{"empty", "", "不是本程序保存的标签列表"},
                      BadFile{"cut in a row", goodText().left(goodText().size() - 20), "不完整"},
                      BadFile{"cut before the end line", goodText().left(goodText().lastIndexOf("END")), "不完整"},
                      BadFile{"row count wrong", goodText().replace("END 3", "END 4"), "不完整"},
                      BadFile{"foreign json", "{\"fields\":[],\"rows\":[]}", "不是本程序保存的标签列表"},
                      BadFile{"binary", QByteArray("\x00\x01\xff\xfe\x80garbage", 12), "不是本程序保存的标签列表"},
                      BadFile{"other columns", QByteArray("QXCK-LABELS 1\nA\tB\nEND 0\n"), "栏目与标签列表不符"},
                      BadFile{"price not a number", goodText().replace("99.5", "abc"), "内容不正确"},
                      BadFile{"unknown escape", goodText().replace("P2R1", "P2\\qR1"), "内容不正确"},
                      BadFile{"missing cell", goodText().replace("\tP2R1", "").replace("P2R1\t", ""), "栏目数不对"}),
    [](const auto& info) {
        QString name = info.param.what;
        return name.replace(' ', '_').toStdString();
    });

}  // namespace
}  // namespace qx::test
