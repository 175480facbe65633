#include "documents/sales/SalesEntry.h"

using namespace qx::documents;

void TSalesEntry::DBGridEhDblClick1(QObject* Sender) {
    if (CK_ID->text().trimmed().isEmpty()) {
        DISPINFO("在选择订单前应先填写一个有效的仓库!", 5);
        return;
    }
    TDocumentEntry::DBGridEhDblClick1(Sender);
}

QList<HeadField> TSalesEntry::customerHead(const QString& numberCaption) {
    return {
        {"Edit1", numberCaption, HeadRole::Number, 12},
        {"KH_GYS_ID", "客    户", HeadRole::Partner, 10, "KG_NAME", LookupList::Partner},
        {"CK_ID", "仓    库", HeadRole::Warehouse, 4, "CK_NAME", LookupList::Warehouse},
        {"BDATE", "开单日期", HeadRole::Date},
        {"YW_ID", "业 务 员", HeadRole::Lookup, 4, "YW_NAME", LookupList::Salesperson},
        {"SEND_ID", "送货方式", HeadRole::Lookup, 2, "SEND_NAME", LookupList::Delivery},
        {"JY_ID", "结算方式", HeadRole::Lookup, 2, "JY_NAME", LookupList::Settlement},
        {"NOTE", "备    注", HeadRole::Text, 100},
        {"EDATE", "更改日期", HeadRole::Changed},
        {"USER_NAME", "开单", HeadRole::Maker},
    };
}

DocumentFilterKind TSalesEntry::customerFilter(const QString& caption, const QString& headTable,
                                               const QString& numberCaption) {
    return {
        caption,
        headTable,
        "<开始日期> 不能大于 <结束日期>!",
        numberCaption,
        " ●" + numberCaption + "：",
        {
            {"KH_ID", "客    户", " ●客户：", "d1102.KH_gys_ID", LookupList::Partner, "d1102", 10},
            {"CK_ID", "仓    库", " ●仓库：", "d1007.ck_ID", LookupList::Warehouse, "", 4},
        },
    };
}
