#include "framework/ScanEntry.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QToolBar>
#include <QVBoxLayout>

#include "framework/DBGridEh.h"
#include "framework/Frm_Base_Entry_Body.h"
#include "framework/LinkForms.h"
#include "framework/SizeMatrix.h"
#include "framework/U_dataop.h"
#include "framework/U_function.h"

namespace qx::scan {

namespace {
QString sizeNameColumns(const QString& table) {
    QStringList names;
    for (int i = 0; i < qx::sizes::Count; ++i) names << table + "." + qx::sizes::nameField(i);
    return names.join(", ");
}
QStringList sizeNamesOf(const TClientDataSet& ds) {
    QStringList names;
    for (int i = 0; i < qx::sizes::Count; ++i) names << ds.FieldByName(qx::sizes::nameField(i))->AsString();
    return names;
}
}  // namespace

ScannedCode resolve(const QString& funcNo, const QString& code) {
    ScannedCode found;
    const QString c = code.trimmed();
    if (c.isEmpty()) return found;
    TClientDataSet ds;
    opensql(&ds, funcNo,
            "SELECT D1801.K_ID, D1801.COL_ID, d1005.COL_NAME, d1809.M_INDEX, " + sizeNameColumns("d1006") +
                " FROM d1809 INNER JOIN D1801 ON d1809.WL_ID = D1801.WL_ID INNER JOIN d1800 ON D1801.K_ID = d1800.K_ID "
                "LEFT OUTER JOIN d1005 ON D1801.COL_ID = d1005.COL_ID LEFT OUTER JOIN d1006 ON d1800.M_ID = d1006.M_ID "
                "WHERE d1809.TM=" +
                QuotedStr(c),
            0, 0, {}, {}, false, "1");
    if (!ds.IsEmpty()) {
        bool ok = false;
        const int position = ds.FieldByName("M_INDEX")->AsString().trimmed().toInt(&ok);
        found.kind = ScannedCode::Kind::Barcode;
        found.style = ds.FieldByName("K_ID")->AsString().trimmed();
        found.colour = ds.FieldByName("COL_ID")->AsString().trimmed();
        found.colourName = ds.FieldByName("COL_NAME")->AsString();
        found.position = ok ? position : -1;
        found.sizeNames = sizeNamesOf(ds);
        return found;
    }
    opensql(&ds, funcNo,
            "SELECT d1800.K_ID, " + sizeNameColumns("d1006") +
                " FROM d1800 LEFT OUTER JOIN d1006 ON d1800.M_ID = d1006.M_ID WHERE d1800.K_ID=" + QuotedStr(c),
            0, 0, {}, {}, false, "1");
    if (!ds.IsEmpty()) {
        found.kind = ScannedCode::Kind::Style;
        found.style = ds.FieldByName("K_ID")->AsString().trimmed();
        found.sizeNames = sizeNamesOf(ds);
    }
    return found;
}

}  // namespace qx::scan

// ---------------------------------------------------------------- the entry screen's part

void Tfrm_Base_Entry_Body::setupRatioAndScan() {
    Act_Ratio = AddAction("Act_Ratio", tr("配比"), QKeySequence(Qt::CTRL | Qt::Key_R), [this] { Act_RatioExecute(Act_Ratio); });
    Act_Ratio->setToolTip(tr("按配比录入当前行的各尺码数量,如 1:2:2:1*12 (也可在合计格中直接输入)"));
    ToolBar->addAction(Act_Ratio);

    auto* bar = new QWidget(this);
    bar->setObjectName("Panel_Scan");
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(0, 0, 0, 0);
    auto* caption = new QLabel(tr("扫描条码"), bar);
    Edit_Scan = new QLineEdit(bar);
    Edit_Scan->setObjectName("Edit_Scan");
    Edit_Scan->setMaxLength(50);
    Edit_Scan->setPlaceholderText(tr("扫描条码或输入款号后回车"));
    caption->setBuddy(Edit_Scan);
    row->addWidget(caption);
    row->addWidget(Edit_Scan, 1);
    MainLayout()->insertWidget(MainLayout()->indexOf(DBGridEh), bar);
    connect(Edit_Scan, &QLineEdit::returnPressed, this, [this] {
        const QString code = Edit_Scan->text();
        qx::guard([&] { ScanCode(code); });
    });
}

void Tfrm_Base_Entry_Body::ScanCode(const AnsiString& code) {
    const QString c = code.trimmed();
    if (ReadOnlyMode || c.isEmpty()) return;
    auto refuse = [this](const QString& message) {
        QApplication::beep();
        DISPINFO(message, 5);
        Edit_Scan->selectAll();
        Edit_Scan->setFocus();
    };
    const qx::scan::ScannedCode found = qx::scan::resolve(FuncNo, c);
    switch (found.kind) {
    case qx::scan::ScannedCode::Kind::Unknown:
        refuse(tr("条码 ") + c + tr(" 不存在(既不是已登记的条码,也不是款号),本次扫描未记录!"));
        return;
    case qx::scan::ScannedCode::Kind::Barcode:
        if (found.position < 0 || found.position >= qx::sizes::Count ||
            !qx::sizes::positionInUse(found.sizeNames, found.position)) {
            refuse(tr("条码 ") + c + tr(" 的尺码位置 ") + QString::number(found.position) + tr(" 不在款号 ") + found.style +
                   tr(" 的尺码组中,本次扫描未记录!"));
            return;
        }
        addScannedSize(found.style, found.colour, found.colourName, found.position);
        Edit_Scan->clear();
        Edit_Scan->setFocus();
        return;
    case qx::scan::ScannedCode::Kind::Style:
        // As when the style is typed: a new line, then colour and sizes are asked.
        Edit_Scan->clear();
        Act_AddLineExecute(Act_AddLine);
        if (DBGridEh->Editing()) DBGridEh->CancelEdit();
        EnterStyle(found.style);
        if (isVisible() && !ColorLink->Visible()) DBGridEh->EditField(firstSizeField());
        return;
    }
}

// One more piece of a size: on the SKU's line, or on a new line for it.
void Tfrm_Base_Entry_Body::addScannedSize(const QString& style, const QString& colour, const QString& colourName,
                                          int position) {
    if (!AdoQry_Main->Active()) AdoQry_Main->CreateDataSet();
    if (DBGridEh->Editing()) DBGridEh->CancelEdit();
    AdoQry_Main->CheckBrowseMode();
    const int styleIndex = AdoQry_Main->FieldIndex(StyleField);
    const int colourIndex = AdoQry_Main->FieldIndex("COL_ID");
    const int source = LineSourceField.isEmpty() ? -1 : AdoQry_Main->FieldIndex(LineSourceField);
    int found = -1;
    for (int r = 0; r < AdoQry_Main->RecordCount() && found < 0; ++r) {
        const bool same = AdoQry_Main->CellValue(r, styleIndex).toString().trimmed().compare(style, Qt::CaseInsensitive) == 0 &&
                          AdoQry_Main->CellValue(r, colourIndex).toString().trimmed().compare(colour, Qt::CaseInsensitive) == 0;
        // A line taken from an order keeps its quantities: a scan makes a line of its own.
        const bool free = source < 0 || AdoQry_Main->CellValue(r, source).toString().trimmed().isEmpty();
        if (same && free) found = r;
    }
    if (found >= 0) {
        AdoQry_Main->SetRecNo(found + 1);
        AdoQry_Main->Edit();
    } else {
        AdoQry_Main->Append();
        AdoQry_Main->FieldByName(StyleField)->SetText(style);
        if (ColorLink->Visible()) ColorLink->Close();  // the barcode names the colour
        colorRow_ = -1;
        setLineColor(colour, colourName);
    }
    TField* quantity = AdoQry_Main->FieldByName(qx::sizes::quantityField(position));
    lineValueTyped(quantity, QString::number(quantity->AsInteger() + 1));
    AdoQry_Main->Post();
    Modified = true;
}
