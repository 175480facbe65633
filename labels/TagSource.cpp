#include "labels/TagSource.h"

#include <QPushButton>
#include <algorithm>
#include <tuple>

#include "framework/DBGridEh.h"
#include "framework/DataSet.h"
#include "framework/Frm_Base.h"
#include "framework/U_function.h"

namespace qx::labels {

QPushButton* AddTagButton(QWidget* parent, const QString& name, const QString& caption, int tag) {
    auto* button = new QPushButton(caption, parent);
    button->setObjectName(name);
    button->setProperty("Tag", tag);
    return button;
}

int ButtonTag(const QObject* button) { return button ? button->property("Tag").toInt() : 0; }

void SetCountText(TField* field, const AnsiString& text) {
    const QString typed = text.trimmed();
    const int count = typed.isEmpty() ? 0 : StrToInt(typed);
    if (count < 0 || count > 9999) {
        DISPINFO("吊牌数量必须在0到9999之间!", 5);
        Abort();
    }
    field->SetAsInteger(count);
}

void DeleteRows(TClientDataSet* dataSet, TDBGridEh* grid, QList<int> rows) {
    std::sort(rows.begin(), rows.end(), std::greater<int>());
    dataSet->DisableControls();
    for (int row : rows) {
        dataSet->SetRecNo(row + 1);
        dataSet->Delete();
    }
    dataSet->EnableControls();
    grid->clearSelection();
}

void SetupSourceGrid(TDBGridEh* grid, TClientDataSet* lines) {
    static const QStringList shown = {"K_ID", "COL_ID", "COL_NAME", "WL_NAME"};
    for (int i = 0; i < grid->ColumnCount(); ++i) {
        TColumnEh* column = grid->Columns(i);
        const QString name = column->FieldName.toUpper();
        const bool count = name.size() == 2 && name[0] == 'S' && name[1].isDigit();
        column->Visible = count || shown.contains(name);
        column->ReadOnly = !count;
    }
    for (int i = 0; i < lines->FieldCount(); ++i) {
        TField* f = lines->Fields(i);
        const QString name = f->FieldName.toUpper();
        if (name.size() == 2 && name[0] == 'S' && name[1].isDigit())
            f->OnSetText = [](TField* field, const AnsiString& text) { SetCountText(field, text); };
    }
    for (const auto& [field, title, width] : {std::tuple{"K_ID", "款号", 100}, {"COL_ID", "色码", 40},
                                               {"COL_NAME", "颜色", 60}, {"WL_NAME", "名称", 130}})
        if (TColumnEh* c = grid->ColumnByField(field)) {
            c->Title = title;
            c->Width = width;
        }
    for (int k = 0; k < 10; ++k)
        if (TColumnEh* c = grid->ColumnByField("S" + QString::number(k))) c->Width = 46;
    ShowSizeTitles(grid, lines);
}

void ShowSizeTitles(TDBGridEh* grid, TClientDataSet* lines) {
    QStringList names;
    const bool any = lines->Active() && !lines->IsEmpty();
    for (int k = 0; k < 10; ++k) {
        TField* f = any ? lines->FindField("M" + QString::number(k)) : nullptr;
        names << (f ? f->AsString() : QString());
    }
    TFrm_Base_Panel::SetSizeTitles(grid, names);
    TFrm_Base_Panel::HideSizeColumnsAfterCM(grid);
    grid->ColumnsChanged();
}

}  // namespace qx::labels
