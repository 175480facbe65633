#include "framework/SizeRatio.h"

#include <QRegularExpression>

#include "framework/Frm_Base_Entry_Body.h"
#include "framework/SizeMatrix.h"

namespace qx::sizes {

namespace {
const QRegularExpression kPackMark(QStringLiteral("[*×xX]"));
const QRegularExpression kPartMark(QStringLiteral("[:：]"));
constexpr long long kLargest = 1000000;  // more than any shelf holds: a typing error

bool nonNegativeInteger(const QString& text, long long& value) {
    static const QRegularExpression digits(QStringLiteral("^[0-9]{1,9}$"));
    if (!digits.match(text).hasMatch()) return false;
    value = text.toLongLong();
    return true;
}
}  // namespace

bool looksLikeRatio(const QString& text) { return text.contains(kPartMark) || text.contains(kPackMark); }

RatioResult parseRatio(const QString& text, const QStringList& sizeNames) {
    RatioResult r;
    QString t = text;
    t.remove(QRegularExpression(QStringLiteral("\\s")));
    if (t.isEmpty()) {
        r.error = QStringLiteral("请输入配比,例如 1:2:2:1*12 (各尺码比例*箱数)!");
        return r;
    }
    const QStringList halves = t.split(kPackMark);
    if (halves.size() > 2) {
        r.error = QStringLiteral("配比 '%1' 只能有一个箱数!").arg(text);
        return r;
    }
    long long packs = 1;
    if (halves.size() == 2 && (!nonNegativeInteger(halves[1], packs) || packs == 0)) {
        r.error = QStringLiteral("配比 '%1' 的箱数 '%2' 必须是大于0的整数!").arg(text, halves[1]);
        return r;
    }
    const QStringList parts = halves[0].split(kPartMark);
    int groupSize = 0;
    for (int i = 0; i < Count && i < sizeNames.size(); ++i)
        if (positionInUse(sizeNames, i)) groupSize = i + 1;
    if (parts.size() > groupSize) {
        r.error = QStringLiteral("配比 '%1' 有 %2 个尺码,而该款的尺码组只有 %3 个尺码!")
                      .arg(text)
                      .arg(parts.size())
                      .arg(groupSize);
        return r;
    }
    bool any = false;
    for (int i = 0; i < parts.size(); ++i) {
        long long part = 0;
        if (!nonNegativeInteger(parts[i], part)) {
            r.error = QStringLiteral("配比 '%1' 中的 '%2' 不是有效的数量(应为0或正整数)!").arg(text, parts[i]);
            r.quantities.clear();
            return r;
        }
        if (part != 0 && !positionInUse(sizeNames, i)) {
            r.error = QStringLiteral("配比 '%1' 的第 %2 个尺码在该款的尺码组中不存在!").arg(text).arg(i + 1);
            r.quantities.clear();
            return r;
        }
        if (part * packs > kLargest) {
            r.error = QStringLiteral("配比 '%1' 得出的数量过大!").arg(text);
            r.quantities.clear();
            return r;
        }
        any = any || part != 0;
        r.quantities << int(part * packs);
    }
    if (!any) {
        r.error = QStringLiteral("配比 '%1' 的各尺码不能全部为0!").arg(text);
        r.quantities.clear();
    }
    return r;
}

}  // namespace qx::sizes

// ---------------------------------------------------------------- the ratio dialog

TFrm_Sys_SizeRatio::TFrm_Sys_SizeRatio(QWidget* Owner) : TFrm_Base_Dialog(Owner) {
    setObjectName("Frm_Sys_SizeRatio");
    SetCaption(tr("按配比录入"));
    Lab_Sizes = Panel_Condition->AddLabel("Lab_Sizes", tr("尺码"));
    Panel_Condition->NewRow();
    Edit_Ratio = Panel_Condition->AddEdit("Edit_Ratio", tr("配比"), 40);
    Edit_Ratio->setPlaceholderText("1:2:2:1");
    Panel_Condition->NewRow();
    Edit_Packs = Panel_Condition->AddEdit("Edit_Packs", tr("箱数"), 6);
    Edit_Packs->setText("1");
    FormCreate();
}

void TFrm_Sys_SizeRatio::InitForm(Tfrm_Base_Entry_Body* entry, const QStringList& sizeNames) {
    entry_ = entry;
    QStringList shown;
    for (int i = 0; i < qx::sizes::Count && i < sizeNames.size(); ++i)
        if (qx::sizes::positionInUse(sizeNames, i)) shown << sizeNames[i].trimmed();
    Lab_Sizes->setText(shown.join(":"));
    Edit_Ratio->clear();
    Edit_Packs->setText("1");
}

AnsiString TFrm_Sys_SizeRatio::RatioText() const {
    return Edit_Ratio->text().trimmed() + "*" + Edit_Packs->text().trimmed();
}

void TFrm_Sys_SizeRatio::btn_okClick(QObject* Sender) {
    TFrm_Base_Dialog::btn_okClick(Sender);
    if (entry_) entry_->EnterRatio(RatioText());  // reports and aborts when the ratio is wrong
    SetModalResult(mrOk);
}

// ---------------------------------------------------------------- the entry screen's part

void Tfrm_Base_Entry_Body::EnterRatio(const AnsiString& text) {
    const bool hasLine = AdoQry_Main->Active() && !AdoQry_Main->IsEmpty() && lineHasStyle(AdoQry_Main->CurrentRow());
    if (ReadOnlyMode || !hasLine) {
        DISPINFO(tr("请先录入款号和颜色,再按配比录入该行的尺码数量!"), 5);
        Abort();
    }
    if (!qx::sizes::looksLikeRatio(text)) {
        DISPINFO(tr("合计数量由各尺码数量相加而得;如按配比录入,请输入配比,例如 1:2:2:1*12 (各尺码比例*箱数)!"), 5);
        Abort();
    }
    const qx::sizes::RatioResult ratio = qx::sizes::parseRatio(text, lineSizeNames(AdoQry_Main->CurrentRow()));
    if (!ratio.ok()) {
        DISPINFO(ratio.error, 5);
        Abort();
    }
    // The same quantities a clerk types size by size (positions after the ratio become 0).
    if (AdoQry_Main->State() == dsBrowse) AdoQry_Main->Edit();
    for (int i = 0; i < qx::sizes::Count; ++i)
        if (TField* f = AdoQry_Main->FindField(qx::sizes::quantityField(i)))
            lineValueTyped(f, QString::number(i < ratio.quantities.size() ? ratio.quantities[i] : 0));
    Modified = true;
}

void Tfrm_Base_Entry_Body::Act_RatioExecute(QObject*) {
    if (ReadOnlyMode) return;
    if (!AdoQry_Main->Active() || AdoQry_Main->IsEmpty() || !lineHasStyle(AdoQry_Main->CurrentRow())) {
        DISPINFO(tr("请先录入款号和颜色,再按配比录入该行的尺码数量!"), 5);
        return;
    }
    if (DBGridEh->Editing()) DBGridEh->CommitEdit();
    TFrm_Sys_SizeRatio dialog(this);
    dialog.InitForm(this, lineSizeNames(AdoQry_Main->CurrentRow()));
    dialog.ShowModal();
}
