#pragma once
// The statements of the purchase receipt screens written out in full, with the values filled in
// by plain replacement: what the screens must send, character for character.
#include <QString>
#include <QStringList>
#include <vector>

namespace qx::test::expected {

inline QString headQuery(const QString& rightsUser = {}) {
    const QString rights = rightsUser.isNull()
                               ? QString()
                               : " sys_USER_CK ON d1007.CK_ID = sys_USER_CK.CK_ID AND (sys_USER_CK.user_id='" +
                                     rightsUser + "') INNER JOIN ";
    return QString(" SELECT d8101.noid,d1103.kh_gys_id,d1103.kg_name,d1007.ck_id, d1007.ck_name,d8101.bdate,"
                   "d8101.edate,d1011.send_id,d8101.SEND_NO, d1011.send_name,sys_user.user_id,sys_user.user_name, "
                   "d1101.yw_id,d1101.yw_name,d8101.note, D1010.JY_ID, D1010.JY_NAME,d8101.t,d8101.sk,d8101.sdate "
                   "FROM d8101 INNER JOIN d1103 ON d8101.kh_gys_id = d1103.kh_gys_id INNER JOIN sys_user ON "
                   "d8101.user_id = sys_user.user_id INNER JOIN d1007 ON d8101.ck_id = d1007.ck_id INNER JOIN d1011 "
                   "ON d8101.send_id = d1011.send_id INNER JOIN d1101 ON d8101.yw_id = d1101.yw_id  INNER JOIN ") +
           rights + "  D1010 ON D8101.JY_ID = D1010.JY_ID ";
}

inline QString lineQuery(const QString& quotedNumber) {
    return QString("SELECT D1800.K_ID, D1005.COL_ID, D1005.COL_NAME, D1800.WL_NAME,D1800.DW_NAME, D8101A.S0, "
                   "D8101A.S1, D8101A.S2, D8101A.S3, D8101A.S4,D8101A.S5, D8101A.S6, D8101A.S7, D1006.M9, D1006.M8, "
                   "D1006.M7, D1006.M6,D1006.M5, D1006.M4, D1006.M3, D1006.M2, D1006.M1, D1006.M0, D8101A.S9,"
                   "D8101A.S8, D8101A.DJ as sj,D8101A.money as smoney,D8101A.NOTE FROM D1801 INNER JOIN D8101A ON "
                   "D1801.WL_ID = D8101A.WL_ID INNER JOIN D1800 ON D1801.K_ID = D1800.K_ID INNER JOIN D1006 ON "
                   "D1800.M_ID = D1006.M_ID INNER JOIN D1005 ON D1801.COL_ID = D1005.COL_ID WHERE (D8101A.NOID =%s)")
        .replace("%s", quotedNumber);
}

inline QString barcodeQuery(const QString& number) {
    return "SELECT D1809.WL_ID, D1809.M_INDEX, D1809.TM FROM D8101A INNER JOIN D1809 ON D8101A.WL_ID = D1809.WL_ID "
           "INNER JOIN D1800 ON D1809.K_ID = D1800.K_ID WHERE (D1800.TMI = 1) and noid='" +
           number + "';";
}

struct Head {
    QString t = "1", number, supplier, warehouse, date, delivery, deliveryNote, buyer, settlement, user, remark, total;
};

struct Line {
    QString style, colour, warehouse;
    QStringList sizes;  // ten texts
    QString price, amount, note;
};

struct Barcode {
    QString tm, wl, index;
};

inline QString insertHead(const Head& h) {
    return "INSERT INTO D8101(T,NOID,KH_GYS_ID,CK_ID, BDATE, SEND_ID,send_no,YW_ID,JY_ID, USER_ID, NOTE,TOLMONEY) "
           "VALUES ('" + h.t + "','" + h.number + "','" + h.supplier + "','" + h.warehouse + "','" + h.date + "','" +
           h.delivery + "','" + h.deliveryNote + "','" + h.buyer + "','" + h.settlement + "','" + h.user + "','" +
           h.remark + "','" + h.total + "');";
}

inline QString updateHead(const Head& h) {
    return "UPDATE D8101 SET EDATE=GETDATE(), KH_GYS_ID='" + h.supplier + "',CK_ID='" + h.warehouse + "',BDATE='" +
           h.date + "',SEND_ID='" + h.delivery + "',send_no='" + h.deliveryNote + "',YW_ID='" + h.buyer +
           "',JY_ID='" + h.settlement + "',USER_ID='" + h.user + "',NOTE='" + h.remark + "',TOLMONEY='" + h.total +
           "' WHERE noid='" + h.number + "';";
}

inline QString insertLine(const QString& number, const Line& l) {
    QString s = "INSERT INTO D8101A  VALUES ('" + number + "','" + l.style + l.colour + "','" + l.style + "','" +
                l.colour + "','" + l.warehouse + "'";
    for (const QString& q : l.sizes) s += ",'" + q + "'";
    return s + ",'" + l.price + "','" + l.amount + "','" + l.note + "');";
}

inline QString completion(const QString& number) {
    return " INSERT INTO D1801 SELECT D8101A.WL_ID, D8101A.K_ID, D8101A.COL_ID FROM D8101A LEFT OUTER JOIN D1801 "
           "ON D8101A.WL_ID = D1801.WL_ID WHERE (D1801.WL_ID IS NULL) AND (D8101A.NOID='" + number + "');" +
           " INSERT INTO D1802 (WL_ID, CK_ID,CHECK_KC) SELECT D8101A.WL_ID, D8101.CK_ID, D1800.CHECK_KC FROM D8101A "
           "INNER JOIN D8101 ON D8101A.NOID = D8101.NOID INNER JOIN D1800 ON D8101A.K_ID = D1800.K_ID LEFT OUTER "
           "JOIN D1802 ON D8101A.WL_ID = D1802.WL_ID AND D8101.CK_ID = D1802.CK_ID WHERE (D8101A.NOID ='" + number +
           "') AND (D1802.WL_ID IS NULL);" +
           "insert into d1809 (WL_ID, M_INDEX, K_ID, TM) SELECT V1809.WL_ID, V1809.mindex, V1809.K_ID, V1809.tm "
           "FROM V1809 LEFT OUTER JOIN D1809 ON V1809.WL_ID = D1809.WL_ID AND V1809.mindex = D1809.M_INDEX WHERE "
           "(V1809.NOID ='" + number + "') AND (D1809.WL_ID IS NULL);";
}

inline QString barcodeUpdate(const Barcode& b) {
    return "UPDATE D1809 SET TM='" + b.tm + "' WHERE WL_ID='" + b.wl + "' AND M_INDEX='" + b.index + "';";
}

// The whole save batch of a mode.
inline QString saveBatch(const QString& mode, const Head& h, const std::vector<Line>& lines,
                         const std::vector<Barcode>& barcodes = {}) {
    QString batch = mode == "Edit" ? updateHead(h) + "delete from  d8101A WHERE NOID='" + h.number + "';"
                                   : insertHead(h);
    for (const Line& l : lines) batch += insertLine(h.number, l);
    batch += completion(h.number);
    for (const Barcode& b : barcodes) batch += barcodeUpdate(b);
    return batch;
}

}  // namespace qx::test::expected
