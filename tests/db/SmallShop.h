#pragma once
// The small shop most database tests start from (see seedSmallShop in DbTestSupport.h); also
// the shop the fuzzing target runs its inputs on. No test framework here.
namespace qx::dbtest {

// Size group A (S, M, L), colours 01 and 02, warehouses ZC, MD1, MD2 and styles K0 (barcode
// rule 0), K1 (rule 2, negative stock allowed), K2 (rule 3, stock checked) and K3 (rule 1, free
// barcodes), each in both colours.
inline const char* const kSmallShopBatch =

        "INSERT INTO D1006 (M_ID, M_NAME, M0, M1, M2, BS0, BS1, BS2) VALUES ('A','服装码','S','M','L','s','m','l');"
        "INSERT INTO D1005 (COL_ID, COL_NAME, S) VALUES ('01','黑色','BK');"
        "INSERT INTO D1005 (COL_ID, COL_NAME, S) VALUES ('02','白色','WH');"
        "INSERT INTO D1007 (CK_ID, CK_NAME) VALUES ('ZC','总仓');"
        "INSERT INTO D1007 (CK_ID, CK_NAME) VALUES ('MD1','一店');"
        "INSERT INTO D1007 (CK_ID, CK_NAME) VALUES ('MD2','二店');"
        "INSERT INTO D1800 (K_ID, M_ID, WL_NAME, CHECK_KC, TMI, DJ) VALUES ('K0','A','款零',0,0,10);"
        "INSERT INTO D1800 (K_ID, M_ID, WL_NAME, CHECK_KC, TMI, DJ) VALUES ('K1','A','款一',0,2,20);"
        "INSERT INTO D1800 (K_ID, M_ID, WL_NAME, CHECK_KC, TMI, DJ) VALUES ('K2','A','款二',1,3,30);"
        "INSERT INTO D1800 (K_ID, M_ID, WL_NAME, CHECK_KC, TMI, DJ) VALUES ('K3','A','款三',0,1,40);"
        "INSERT INTO D1801 VALUES ('K001','K0','01');INSERT INTO D1801 VALUES ('K002','K0','02');"
        "INSERT INTO D1801 VALUES ('K101','K1','01');INSERT INTO D1801 VALUES ('K102','K1','02');"
        "INSERT INTO D1801 VALUES ('K201','K2','01');INSERT INTO D1801 VALUES ('K202','K2','02');"
        "INSERT INTO D1801 VALUES ('K301','K3','01');INSERT INTO D1801 VALUES ('K302','K3','02');"
        "INSERT INTO sys_co (CO, PARAM) VALUES ('测试公司','');";

}  // namespace qx::dbtest
