#pragma once
// A small shop in a temporary SQLite database for the label and supervision-code screens: one
// size group with size marks, colours with colour marks, a brand, one style per barcode rule,
// free barcodes for the rule-1 style, a purchase receipt over them, supervision codes and a
// member; the program folder (label file, settings) is a temporary folder too. Every statement
// the screens send is recorded.
#include <QTemporaryDir>
#include <deque>
#include <functional>
#include <map>

#include "framework/Settings.h"
#include "tests/support/GoldenStatements.h"
#include "tests/support/ShopDatabaseTest.h"

namespace qx::test {

// Expected statements kept as data: tests/labels/golden/<file>, a block per case.
inline QString golden(const QString& file, const QString& name, const QHash<QString, QString>& values = {}) {
    static std::map<QString, GoldenStatements> read;  // each file read once
    auto at = read.find(file);
    if (at == read.end()) at = read.try_emplace(file, "labels/golden/" + file).first;
    return at->second.text(name, values);
}

class LabelsTest : public ShopDatabaseTest {
protected:
    void SetUp() override {
        qx::settings::setProgramFolder(programDir.path());
        ShopDatabaseTest::SetUp();
        G_CkName = "总仓";
        G_CoName = "测试服饰";
        G_CM = 4;
        qx::ui::setModalHandler([this](TFrm_Base* dialog) -> int {
            if (steps.empty()) {
                ADD_FAILURE() << "unexpected dialog " << dialog->objectName().toStdString();
                return mrCancel;
            }
            auto step = std::move(steps.front());
            steps.pop_front();
            return step(dialog);
        });
    }
    void TearDown() override {
        ShopDatabaseTest::TearDown();
        qx::settings::setProgramFolder({});
        EXPECT_TRUE(steps.empty()) << steps.size() << " dialog steps were not used";
    }

    void seed() override {
        exec("INSERT INTO sys_co (CO, PARAM) VALUES ('测试服饰', '')");
        seedUserAndWarehouses(*db);
        seedTradingPartners(*db);
        exec("INSERT INTO d1009 (PP_ID, PP_NAME) VALUES ('P1', '海风')");
        exec("INSERT INTO d1006 (M_ID, M_NAME, M0, M1, M2, M3, M4, BS0, BS1, BS2, BS3, BS4) VALUES "
             "('01', '服装', 'S', 'M', 'L', 'XL', '2XL', '1', '2', '3', '4', '5')");
        exec("INSERT INTO d1005 (COL_ID, COL_NAME, S) VALUES ('01', '红色', 'R')");
        exec("INSERT INTO d1005 (COL_ID, COL_NAME, S) VALUES ('02', '黑色', 'B')");
        // One style per barcode rule: K0 style code, K1 free barcodes, K2 style+colour+size,
        // K3 style+size+colour (K3 prints its own code: no separate barcode style code).
        const char* styles[][4] = {{"K0", "0", "'P0'", "'T恤'"}, {"K1", "1", "'P1'", "'衬衫'"},
                                   {"K2", "2", "'P2'", "'夹克'"}, {"K3", "3", "''", "'裤子'"}};
        for (const auto& s : styles) {
            exec(QString("INSERT INTO d1800 (K_ID, PP_ID, M_ID, WL_NAME, DW_NAME, PFJ, PP, CL, TMI, PP_KID) VALUES "
                         "('%1', 'P1', '01', %4, '件', 199, '海风', '100%棉', %2, %3)")
                     .arg(s[0], s[1], s[2], s[3]));
            for (const char* colour : {"01", "02"}) {
                exec(QString("INSERT INTO d1804 VALUES ('%1', '%2')").arg(s[0], colour));
                exec(QString("INSERT INTO d1801 VALUES ('%1%2', '%1', '%2')").arg(s[0], colour));
            }
        }
        exec("INSERT INTO d1809 VALUES ('K101', '0', 'K1', '6901234567892')");
        exec("INSERT INTO d1809 VALUES ('K101', '1', 'K1', 'FREE-M-01')");
        exec("INSERT INTO d1809 VALUES ('K101', '1', 'K1', 'FREE-M-00')");  // the largest wins
        exec("INSERT INTO D8101 (T, NOID, KH_GYS_ID, CK_ID, BDATE, SEND_ID, SEND_NO, YW_ID, JY_ID, USER_ID, NOTE) "
             "VALUES (1, 'R0001', 'G01', '01', '2026-03-01', '1', 'SN1', '01', '1', 'U1', '')");
        exec("INSERT INTO D8101 (T, NOID, KH_GYS_ID, CK_ID, BDATE, SEND_ID, SEND_NO, YW_ID, JY_ID, USER_ID, NOTE) "
             "VALUES (1, 'R0002', 'G01', '01', '2026-03-05', '1', 'SN2', '01', '1', 'U1', '')");
        // R0002: K2 red 2/0/1 in sizes S, M, L; K1 red one M.
        exec("INSERT INTO D8101A VALUES ('R0002', 'K201', 'K2', '01', '01', 2, 0, 1, 0, 0, 0, 0, 0, 0, 0, 100, 300, '')");
        exec("INSERT INTO D8101A VALUES ('R0002', 'K101', 'K1', '01', '01', 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 100, 100, '')");
        exec("INSERT INTO D8101A VALUES ('R0001', 'K001', 'K0', '01', '01', 1, 1, 0, 0, 0, 0, 0, 0, 0, 0, 100, 200, '')");
        exec("INSERT INTO d702 (VIPID, VIPNAME) VALUES ('V01', '李会员')");
        exec("INSERT INTO d1805 (JGM, K_ID, CK_ID, DATE1, DATE2, DATE3, VIPID) VALUES "
             "('JGA100', 'K0', '01', '2026-01-02', '2026-01-05', '2026-02-01', 'V01')");
        exec("INSERT INTO d1805 (JGM, K_ID, CK_ID, DATE1) VALUES ('XA1Y', 'K1', NULL, '2026-01-02')");
        exec("INSERT INTO d1805 (JGM, K_ID, CK_ID, DATE1) VALUES ('JGB200', 'K2', NULL, '2026-01-03')");
        exec("INSERT INTO d1805 (JGM, K_ID, CK_ID, DATE1) VALUES ('JGB201', 'K2', NULL, '2026-01-03')");
    }

    // What the next modal dialogs do: each step drives one dialog and returns its result.
    std::deque<std::function<int(TFrm_Base*)>> steps;
    QTemporaryDir programDir;
};

}  // namespace qx::test
