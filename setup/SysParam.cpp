#include "setup/SysParam.h"

#include <QRegularExpression>
#include <algorithm>

namespace qx::setup {
namespace {
constexpr int kReadItems = 50;

QString flag(bool on) { return on ? "1" : "0"; }
}  // namespace

QStringList paddedParamItems(const QString& param) {
    QStringList items = param.split(',');
    if (param.isEmpty()) items.clear();
    while (items.size() < kReadItems) items << "1";
    return items;
}

SysParam SysParam::read(const QString& param) {
    const QStringList p = paddedParamItems(param);
    const auto on = [&](int i) { return p[i] != "0"; };      // ticked unless "0"
    const auto exactlyOne = [&](int i) { return p[i] == "1"; };
    SysParam s;
    s.autoGoodsCode = on(0);
    s.classPrefix = on(1);
    s.goodsDigits = std::max(4, p[2].trimmed().toInt());
    s.warehouseRights = on(3);
    s.offerUnknownStyle = on(4);
    s.discount = on(5);
    s.goLiveHidden = on(6);
    s.offlineSales = on(7);
    s.memberFirst = on(8);
    s.noteColumn = on(9);
    // four indexes 0-4 written together; anything else reads as the default order "1234"
    static const QRegularExpression order("^[0-4]{4}$");
    if (order.match(p[10]).hasMatch())
        for (int i = 0; i < 4; ++i) s.barcodeOrder[size_t(i)] = p[10][i].digitValue();
    s.shift = on(11);
    s.partnerAutoCode = on(15);
    s.partnerDigits = std::max(4, p[16].trimmed().toInt());
    s.logOperations = on(17);
    s.salesDecimals = p[18];
    s.rounding = (p[19] == "1" || p[19] == "2" || p[19] == "3") ? p[19] : QString();
    s.goLive = on(20);
    s.yuanPerPoint = p[21];
    s.allowNegative = p[28] == "0";
    const int memberLength = p[29].trimmed().toInt();
    s.memberAutoCode = memberLength > 1;
    s.memberDigits = s.memberAutoCode ? memberLength : 5;
    s.singleBrand = exactlyOne(30);
    s.colourCode = exactlyOne(31);
    s.allColours = exactlyOne(32);
    for (int i = 0; i < 4; ++i) s.barcodeRules[size_t(i)] = exactlyOne(33 + i);
    s.byDiscount = exactlyOne(37);
    return s;
}

QString SysParam::write() const {
    QStringList p;
    p << flag(autoGoodsCode) << flag(classPrefix) << QString::number(goodsDigits) << flag(warehouseRights)
      << flag(offerUnknownStyle) << flag(discount) << flag(goLiveHidden) << flag(offlineSales)
      << flag(memberFirst) << flag(noteColumn);
    QString order;
    for (int index : barcodeOrder) order += QString::number(index);
    p << order << flag(shift) << "1" << "1" << "1" << flag(partnerAutoCode) << QString::number(partnerDigits)
      << flag(logOperations) << salesDecimals << rounding << flag(goLive) << yuanPerPoint;
    for (int i = 22; i <= 27; ++i) p << "1";
    p << (allowNegative ? "0" : "1") << (memberAutoCode ? QString::number(memberDigits) : QString("0"))
      << flag(singleBrand) << flag(colourCode) << flag(allColours);
    for (bool rule : barcodeRules) p << flag(rule);
    p << flag(byDiscount);
    return p.join(',');
}

}  // namespace qx::setup
