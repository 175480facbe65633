#pragma once
// The option string sys_co.PARAM: items separated by ",", read by position. A short or empty
// string reads as if padded with "1" to 50 items. Positions 12-14 and 22-27 are reserved and
// always written as "1"; the string written has 38 items (positions 0-37).
#include <QString>
#include <QStringList>
#include <array>

namespace qx::setup {

struct SysParam {
    bool autoGoodsCode = true;        // 0
    bool classPrefix = true;          // 1
    int goodsDigits = 6;              // 2: 4-10, read back as at least 4
    bool warehouseRights = true;      // 3 (also sys_co.ck_qs)
    bool offerUnknownStyle = true;    // 4
    bool discount = true;             // 5
    bool goLiveHidden = true;         // 6
    bool offlineSales = true;         // 7
    bool memberFirst = true;          // 8
    bool noteColumn = true;           // 9
    std::array<int, 4> barcodeOrder{1, 2, 3, 4};  // 10: four indexes 0-4, written together
    bool shift = true;                // 11
    bool partnerAutoCode = true;      // 15
    int partnerDigits = 6;            // 16: 4-6, read back as at least 4
    bool logOperations = true;        // 17
    QString salesDecimals = "1";      // 18: 0-2
    QString rounding = "1";           // 19: "1" round, "2" round up, "3" cut off, "" none
    bool goLive = true;               // 20
    QString yuanPerPoint = "1";       // 21: as typed
    bool allowNegative = false;       // 28: stored inverted ("0" when allowed)
    bool memberAutoCode = false;      // 29: the length when on, "0" when off
    int memberDigits = 5;             // 29: the length box (5 when the code is off)
    bool singleBrand = true;          // 30
    bool colourCode = true;           // 31
    bool allColours = true;           // 32
    std::array<bool, 4> barcodeRules{true, true, true, true};  // 33-36: rule (tmi) 0-3
    bool byDiscount = true;           // 37

    // Reads a stored string: plain flags are on unless the item is "0"; positions 30-36 are on
    // only when the item is "1".
    static SysParam read(const QString& param);
    // The 38 items joined with ",".
    QString write() const;
};

// Splits at "," and pads with "1" to 50 items.
QStringList paddedParamItems(const QString& param);

}  // namespace qx::setup
