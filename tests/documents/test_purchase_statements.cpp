// Every statement the purchase receipt screens send, for each way of opening the entry screen
// and each combination of warehouse rights, approval and barcodes per size: compared character
// for character with the statements written out in full.
#include <tuple>

#include "tests/documents/ExpectedStatements.h"
#include "tests/documents/PurchaseFixture.h"

namespace {

using qx::dataop::Call;
namespace expected = qx::test::expected;

QStringList tenSizes(std::initializer_list<const char*> given) {
    QStringList out;
    for (const char* s : given) out << s;
    while (out.size() < 10) out << "0";
    return out;
}

// mode, rights enforced, approval, barcodes per size
using Variant = std::tuple<const char*, bool, bool, bool>;

class PurchaseStatementTest : public qx::test::PurchaseTest, public ::testing::WithParamInterface<Variant> {
protected:
    void SetUp() override {
        PurchaseTest::SetUp();
        addReceipt("R0305", "2026-03-05", "01", 1);
        exec("INSERT INTO D1801 VALUES ('K0101','K01','01')");
        exec("INSERT INTO D8101A VALUES ('R0305','K0101','K01','01','01',1,2,0,0,0,0,0,0,0,0,10,30,'')");
        exec("UPDATE d1800 SET TMI=1 WHERE K_ID='K01'");
        exec("INSERT INTO d1809 VALUES ('K0101','0','K01','6900000000011')");
        exec("INSERT INTO d1809 VALUES ('K0101','1','K01','6900000000028')");
        const auto& [mode, rights, approval, barcodes] = GetParam();
        G_CHKCK = rights ? 1 : 0;
        G_SK = approval ? 1 : 0;
        G_SKSTR = approval ? "0" : "1";
        GKH4_2 = barcodes ? 1 : 0;
        calls.clear();
    }
};

TEST_P(PurchaseStatementTest, TheScreensSendExactlyTheseStatements) {
    const auto& [modeText, rights, approval, barcodes] = GetParam();
    const QString mode = modeText;
    const QString where = " WHERE (D8101.BDATE>='2026-03-01') AND (D8101.BDATE<='2026-03-18') ";

    TQXCK201* list = openList();
    auto opened = statements(Call::Kind::OpenSql);
    ASSERT_GE(opened.size(), 2u);
    EXPECT_EQ(opened[0], expected::headQuery(rights ? QString("U1") : QString()) + where);
    EXPECT_EQ(opened[1], expected::lineQuery("'R0305'"));
    ASSERT_TRUE(list->AdoQry_Main->Locate("noid", "R0305"));

    calls.clear();
    if (mode == "Add") list->Act_Add->trigger();
    else if (mode == "CopyAdd") list->Act_CopyAdd->trigger();
    else list->Act_Edit->trigger();
    TQXCK201_1* e = list->entry();
    ASSERT_EQ(e->EditMode, mode);

    // Opening: a new number for new receipts, the barcodes when editing with barcodes per size,
    // then the lines.
    opened = statements(Call::Kind::OpenSql);
    ASSERT_FALSE(opened.empty());
    EXPECT_EQ(statements(Call::Kind::GetNOID).size(), mode == "Edit" ? 0u : 1u);
    size_t next = 0;
    if (barcodes && mode == "Edit") {
        EXPECT_EQ(opened[next++], expected::barcodeQuery("R0305"));
    }
    ASSERT_LT(next, opened.size());
    EXPECT_EQ(opened[next], expected::lineQuery(mode == "Add" ? "''" : "'R0305'"));
    if (!(barcodes && mode == "Edit")) {
        for (const QString& sql : opened) EXPECT_FALSE(sql.contains("D1809.TM")) << sql.toStdString();
    }

    std::vector<expected::Line> lines;
    if (mode == "Add") {
        fillHead(e);
    } else {
        lines.push_back({"K01", "01", "01", tenSizes({"1", "2"}), "10", "30", ""});
    }
    addLine(e, "K02", "03", {"", "4"}, "20");
    lines.push_back({"K02", "03", "01", tenSizes({"0", "4"}), "20", "80", ""});

    expected::Head h;
    h.t = approval ? "0" : "1";
    h.number = e->Edit1->text();
    h.supplier = "G01";
    h.warehouse = "01";
    h.date = mode == "Add" ? "2026-03-18" : "2026-03-05";
    h.delivery = mode == "Add" ? "2" : "1";
    h.deliveryNote = mode == "Add" ? "HM-0318" : "SN-R0305";
    h.buyer = "01";
    h.settlement = "1";
    h.user = "U1";
    h.remark = mode == "Add" ? "春装到货" : "";
    h.total = mode == "Add" ? "80" : "110";
    std::vector<expected::Barcode> codes;
    if (barcodes && mode == "Edit") codes = {{"6900000000011", "K0101", "0"}, {"6900000000028", "K0101", "1"}};

    calls.clear();
    e->Act_Save->trigger();
    EXPECT_TRUE(sink->texts().isEmpty()) << sink->texts().join("|").toStdString();
    const auto batches = statements(Call::Kind::ExecSql);
    ASSERT_EQ(batches.size(), 1u);
    EXPECT_EQ(batches[0], expected::saveBatch(mode, h, lines, codes));
    const Call exec = lastExec();
    EXPECT_EQ(exec.funcNo, "201");
    EXPECT_EQ(exec.noid, h.number);
    EXPECT_EQ(exec.mode, mode);
    // After the save the list shows the lines of the saved receipt.
    ASSERT_FALSE(statements(Call::Kind::OpenSql).empty());
    EXPECT_EQ(statements(Call::Kind::OpenSql).back(), expected::lineQuery("'" + h.number + "'"));

    // And the database holds it: once, effective unless it is a new receipt awaiting approval
    // (editing keeps the state the receipt had).
    EXPECT_EQ(count("SELECT COUNT(*) FROM D8101 WHERE NOID='" + h.number + "'"), 1);
    EXPECT_EQ(count("SELECT COUNT(*) FROM D8101A WHERE NOID='" + h.number + "'"), int(lines.size()));
    EXPECT_EQ(count("SELECT COUNT(*) FROM D1801 WHERE WL_ID='K0203'"), 1);
    EXPECT_EQ(count("SELECT COUNT(*) FROM D1802 WHERE WL_ID='K0203' AND CK_ID='01'"), 1);
    EXPECT_EQ(scalar("SELECT KC FROM d1802 WHERE WL_ID='K0203' AND CK_ID='01'"), approval && mode != "Edit" ? "0" : "4");
    delete list;
}

std::string variantName(const ::testing::TestParamInfo<Variant>& info) {
    const auto& [mode, rights, approval, barcodes] = info.param;
    return std::string(mode) + (rights ? "_Rights" : "_AllWarehouses") + (approval ? "_Approval" : "_NoApproval") +
           (barcodes ? "_BarcodesPerSize" : "_NoBarcodes");
}

INSTANTIATE_TEST_SUITE_P(EveryOpening, PurchaseStatementTest,
                         ::testing::Combine(::testing::Values("Add", "CopyAdd", "Edit"), ::testing::Bool(),
                                            ::testing::Bool(), ::testing::Bool()),
                         variantName);

}  // namespace
