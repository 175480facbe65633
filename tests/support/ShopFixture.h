#pragma once
// The one environment of the document screen tests: a small shop in a temporary SQLite database
// (two warehouses, suppliers, customers, a salesperson, methods, one size group and styles K01
// (colours 01, 02) and K02 (03)), the signed-in user's globals, today fixed at 2026-03-18, and
// every statement the screens send recorded. Lists are opened through their filter as a user
// does; lines are typed into the grid's cells.
#include <QLineEdit>
#include <functional>
#include <vector>

#include "documents/common/DocumentEntry.h"
#include "documents/common/DocumentFilter.h"
#include "documents/common/DocumentList.h"
#include "framework/DBGridEh.h"
#include "tests/support/ShopDatabaseTest.h"

namespace qx::test {

class ShopScreenTest : public ShopDatabaseTest {
protected:
    void SetUp() override {
        ShopDatabaseTest::SetUp();
        G_CkName = "总仓";
    }

    void seed() override {
        exec("INSERT INTO sys_co (CO, PARAM) VALUES ('测试服饰', '')");
        seedUserAndWarehouses(*db);
        exec("INSERT INTO sys_user (USER_ID, USER_NAME) VALUES ('U2', '店员')");
        seedTradingPartners(*db);
        exec("INSERT INTO d1103 (KH_GYS_ID, KG_NAME) VALUES ('G02', '利达服饰')");
        exec("INSERT INTO d1102 (KH_GYS_ID, KG_NAME) VALUES ('C01', '城东专卖')");
        exec("INSERT INTO d1102 (KH_GYS_ID, KG_NAME) VALUES ('C02', '河西批发')");
        exec("INSERT INTO d1010 (JY_ID, JY_NAME) VALUES ('2', '月结')");
        exec("INSERT INTO d1011 (SEND_ID, SEND_NAME) VALUES ('2', '物流')");
        exec("INSERT INTO d1006 (M_ID, M_NAME, M0, M1, M2, M3, M4) VALUES ('01', '服装', 'S', 'M', 'L', 'XL', '2XL')");
        exec("INSERT INTO d1005 (COL_ID, COL_NAME) VALUES ('01', '红色')");
        exec("INSERT INTO d1005 (COL_ID, COL_NAME) VALUES ('02', '黑色')");
        exec("INSERT INTO d1005 (COL_ID, COL_NAME) VALUES ('03', '蓝色')");
        exec("INSERT INTO d1800 (K_ID, M_ID, WL_NAME, DW_NAME, CGJ, PFJ, TMI, CHECK_KC) VALUES "
             "('K01', '01', '衬衫', '件', 10, 99, 0, 0)");
        exec("INSERT INTO d1800 (K_ID, M_ID, WL_NAME, DW_NAME, CGJ, PFJ, TMI, CHECK_KC) VALUES "
             "('K02', '01', '裤子', '条', 20, 159, 0, 0)");
        exec("INSERT INTO d1804 VALUES ('K01', '01')");
        exec("INSERT INTO d1804 VALUES ('K01', '02')");
        exec("INSERT INTO d1804 VALUES ('K02', '03')");
    }

    // A document list opened on its function code; `fillFilter` fills the filter dialog before
    // OK (nothing: this month as preset).
    template <class List>
    List* openList(int code, std::function<void(TDocumentFilter*)> fillFilter = {}) {
        qx::ui::setModalHandler([fillFilter](TFrm_Base* dialog) {
            auto* filter = dynamic_cast<TDocumentFilter*>(dialog);
            if (!filter) return int(mrCancel);
            if (fillFilter) fillFilter(filter);
            filter->btn_ok->click();
            return filter->ModalResult();
        });
        auto* list = new List(nullptr);
        list->resize(1200, 600);
        list->Tag = code;
        list->InitForm(record(code));
        return list;
    }

    // Types into a line cell as the grid's editor does.
    bool typeCell(TDocumentEntry* e, const QString& field, const QString& text) {
        auto* model = e->DBGridEh->model();
        TColumnEh* column = e->DBGridEh->ColumnByField(field);
        if (!column) return false;
        return model->setData(model->index(e->AdoQry_Main->CurrentRow(), column->Index()), text, Qt::EditRole);
    }

    // The cell editor the grid has open, if any.
    static QLineEdit* openEditor(TDBGridEh* grid) {
        if (!grid->Editing()) return nullptr;
        for (QLineEdit* candidate : grid->viewport()->findChildren<QLineEdit*>())
            if (candidate->isVisible()) return candidate;
        return nullptr;
    }

    // A new line: style, colour, then quantities by size position and optionally the price.
    void addLine(TDocumentEntry* e, const QString& style, const QString& colour, const std::vector<QString>& sizes,
                 const QString& price = {}) {
        e->Act_AddLine->trigger();
        // The new line's style cell is open for typing: the code is typed there and confirmed.
        if (QLineEdit* editor = openEditor(e->DBGridEh)) {
            editor->setText(style);
            e->DBGridEh->CommitEdit();
        } else {
            e->EnterStyle(style);
        }
        e->EnterColor(colour);
        for (size_t i = 0; i < sizes.size(); ++i) {
            if (!sizes[i].isEmpty()) {
                EXPECT_TRUE(typeCell(e, "S" + QString::number(i), sizes[i]));
            }
        }
        if (!price.isEmpty()) {
            EXPECT_TRUE(typeCell(e, "sj", price));
        }
        e->AdoQry_Main->CheckBrowseMode();
    }
};

}  // namespace qx::test
