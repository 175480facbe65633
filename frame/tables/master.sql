-- Master data: classes, colours, size groups, warehouses, departments, brands, settlement and
-- delivery methods, salespeople, customers, suppliers, styles, SKUs, barcodes, supervision codes.
-- Codes and names compare the way the shop's users expect: case-insensitively, trailing blanks
-- ignored (the engines give every text column that collation).

CREATE TABLE d1004 (
    CLASS_ID   VARCHAR(4)  NOT NULL PRIMARY KEY,
    CLASS_NAME VARCHAR(30) NULL,
    CLASS_NOTE VARCHAR(100) NULL,
    OID        VARCHAR(10) NULL,
    PYM        VARCHAR(30) NULL
);

-- Colours. S is the colour mark used in generated barcodes (rules 2 and 3).
CREATE TABLE d1005 (
    COL_ID   VARCHAR(4)  NOT NULL PRIMARY KEY,
    COL_NAME VARCHAR(20) NULL,
    PYM      VARCHAR(20) NULL,
    S        VARCHAR(4)  NULL,
    PP_ID    VARCHAR(4)  NULL
);

-- Size groups: M0..M9 are the size names of positions 0-9 (grid titles), BS0..BS9 the size
-- marks that generated barcodes use.
CREATE TABLE d1006 (
    M_ID   VARCHAR(4)  NOT NULL PRIMARY KEY,
    M_NAME VARCHAR(10) NULL,
    PYM    VARCHAR(10) NULL,
    M0 VARCHAR(10) NULL, M1 VARCHAR(10) NULL, M2 VARCHAR(10) NULL, M3 VARCHAR(10) NULL,
    M4 VARCHAR(10) NULL, M5 VARCHAR(10) NULL, M6 VARCHAR(10) NULL, M7 VARCHAR(10) NULL,
    M8 VARCHAR(10) NULL, M9 VARCHAR(10) NULL,
    BS0 VARCHAR(4) NULL, BS1 VARCHAR(4) NULL, BS2 VARCHAR(4) NULL, BS3 VARCHAR(4) NULL,
    BS4 VARCHAR(4) NULL, BS5 VARCHAR(4) NULL, BS6 VARCHAR(4) NULL, BS7 VARCHAR(4) NULL,
    BS8 VARCHAR(4) NULL, BS9 VARCHAR(4) NULL
);

-- Warehouses. G1: 0 = own warehouse or shop, 1 = distributor.
CREATE TABLE d1007 (
    CK_ID   VARCHAR(4)  NOT NULL PRIMARY KEY,
    CK_NAME VARCHAR(16) NULL,
    CK_GL   VARCHAR(20) NULL,
    CK_TEL  VARCHAR(30) NULL,
    CK_ADDR VARCHAR(80) NULL,
    CK_NOTE VARCHAR(100) NULL,
    OID     VARCHAR(10) NULL,
    PYM     VARCHAR(16) NULL,
    CS_DATE DATETIME    NULL,
    G1      INT         DEFAULT 0
);

CREATE TABLE d1008 (
    BM_ID   VARCHAR(4)  NOT NULL PRIMARY KEY,
    BM_NAME VARCHAR(10) NULL
);

CREATE TABLE d1009 (
    PP_ID   VARCHAR(4)  NOT NULL PRIMARY KEY,
    PP_NAME VARCHAR(20) NULL,
    PYM     VARCHAR(20) NULL
);

CREATE TABLE d1010 (
    JY_ID   VARCHAR(2)  NOT NULL PRIMARY KEY,
    JY_NAME VARCHAR(50) NULL
);

CREATE TABLE d1011 (
    SEND_ID   VARCHAR(2)  NOT NULL PRIMARY KEY,
    SEND_NAME VARCHAR(10) NULL
);

CREATE TABLE d1101 (
    YW_ID   VARCHAR(4)  NOT NULL PRIMARY KEY,
    YW_NAME VARCHAR(20) NULL,
    BM_ID   VARCHAR(4)  NULL
);

-- Customers.
CREATE TABLE d1102 (
    KH_GYS_ID   VARCHAR(10)  NOT NULL PRIMARY KEY,
    KG_NAME     VARCHAR(40)  NULL,
    PYM         VARCHAR(40)  NULL,
    FULL_NAME   VARCHAR(100) NULL,
    FZR         VARCHAR(20)  NULL,
    TEL         VARCHAR(50)  NULL,
    TEL1        VARCHAR(50)  NULL,
    FAX         VARCHAR(30)  NULL,
    GRADE       VARCHAR(10)  NULL,
    ADDR_ID     VARCHAR(10)  NULL,
    SEND_ID     VARCHAR(2)   NULL,
    BDATE       DATETIME     NULL,
    EDATE       DATETIME     NULL,
    ADDR        VARCHAR(100) NULL,
    EMAIL       VARCHAR(50)  NULL,
    WEB         VARCHAR(50)  NULL,
    NOTE        VARCHAR(100) NULL,
    BEGIN_MONEY DECIMAL(18,2) DEFAULT 0,
    KM_IDA      VARCHAR(20)  NULL,
    KM_IDB      VARCHAR(20)  NULL
);

-- Suppliers (same columns as the customers).
CREATE TABLE d1103 (
    KH_GYS_ID   VARCHAR(10)  NOT NULL PRIMARY KEY,
    KG_NAME     VARCHAR(40)  NULL,
    PYM         VARCHAR(40)  NULL,
    FULL_NAME   VARCHAR(100) NULL,
    FZR         VARCHAR(20)  NULL,
    TEL         VARCHAR(50)  NULL,
    TEL1        VARCHAR(50)  NULL,
    FAX         VARCHAR(30)  NULL,
    GRADE       VARCHAR(10)  NULL,
    ADDR_ID     VARCHAR(10)  NULL,
    SEND_ID     VARCHAR(2)   NULL,
    BDATE       DATETIME     NULL,
    EDATE       DATETIME     NULL,
    ADDR        VARCHAR(100) NULL,
    EMAIL       VARCHAR(50)  NULL,
    WEB         VARCHAR(50)  NULL,
    NOTE        VARCHAR(100) NULL,
    BEGIN_MONEY DECIMAL(18,2) DEFAULT 0,
    KM_IDA      VARCHAR(20)  NULL,
    KM_IDB      VARCHAR(20)  NULL
);

-- Styles. TMI is the barcode rule the style was created under: 0 barcode = style code,
-- 1 free barcodes per SKU and size in d1809, 2 style + colour mark + size mark,
-- 3 style + size mark + colour mark. CHECK_KC = 1 forbids negative stock of the style.
CREATE TABLE d1800 (
    K_ID      VARCHAR(17)  NOT NULL PRIMARY KEY,
    PP_ID     VARCHAR(4)   NULL,
    M_ID      VARCHAR(4)   NULL,
    CLASS_ID  VARCHAR(4)   NULL,
    WL_NAME   VARCHAR(80)  NULL,
    DW_NAME   VARCHAR(6)   NULL,
    WL_YS     INT          DEFAULT 0,
    KC        INT          DEFAULT 0,
    DJ        DECIMAL(18,2) DEFAULT 0,
    CGJ       DECIMAL(18,2) DEFAULT 0,
    PFJ       DECIMAL(18,2) DEFAULT 0,
    PP        VARCHAR(30)  NULL,
    GHS       VARCHAR(30)  NULL,
    CL        VARCHAR(50)  NULL,
    MONEY     DECIMAL(18,2) DEFAULT 0,
    USER_ID   VARCHAR(10)  NULL,
    BDATE     DATETIME     NULL,
    EDATE     DATETIME     NULL,
    T         INT          DEFAULT 1,
    NOTE      VARCHAR(100) NULL,
    PICT      VARCHAR(100) NULL,
    PYM       VARCHAR(80)  NULL,
    CHECK_KC  INT          DEFAULT 0,
    TMI       INT          DEFAULT 0,
    PP_KID    VARCHAR(20)  NULL,
    COL_GROUP VARCHAR(50)  NULL,
    DYEAR     VARCHAR(10)  NULL,
    JJ        VARCHAR(10)  NULL,
    VIPF      DECIMAL(18,2) DEFAULT 0
);

-- SKUs (style + colour). Inserted positionally: WL_ID, K_ID, COL_ID and nothing else.
-- K_ID and COL_ID stay nullable: system initialisation inserts a bare placeholder SKU.
CREATE TABLE d1801 (
    WL_ID  VARCHAR(21) NOT NULL PRIMARY KEY,
    K_ID   VARCHAR(17) NULL,
    COL_ID VARCHAR(4)  NULL
);

-- Only system initialisation names this table (it clears it).
CREATE TABLE d1803 (
    WL_ID  VARCHAR(21) NULL,
    CK_ID  VARCHAR(4)  NULL,
    BDATE  DATETIME    NULL,
    NOTE   VARCHAR(100) NULL
);

-- Colours offered per style. Inserted positionally: K_ID, COL_ID.
CREATE TABLE d1804 (
    K_ID   VARCHAR(17) NOT NULL,
    COL_ID VARCHAR(4)  NOT NULL
);

-- Supervision codes.
CREATE TABLE d1805 (
    JGM   VARCHAR(50) NOT NULL PRIMARY KEY,
    K_ID  VARCHAR(17) NULL,
    CK_ID VARCHAR(4)  NULL,
    DATE1 DATETIME    NULL,
    DATE2 DATETIME    NULL,
    DATE3 DATETIME    NULL,
    VIPID VARCHAR(20) NULL
);

-- Barcodes per SKU and size position.
CREATE TABLE d1809 (
    WL_ID   VARCHAR(21) NOT NULL,
    M_INDEX VARCHAR(2)  NOT NULL,
    K_ID    VARCHAR(17) NULL,
    TM      VARCHAR(40) NULL
);

-- A style's SKUs: the stock query reaches the stock rows from the styles through it.
CREATE INDEX IX_d1801_K ON d1801 (K_ID);
CREATE INDEX IX_d1804_K ON d1804 (K_ID);
CREATE INDEX IX_d1809_WL ON d1809 (WL_ID, M_INDEX);
CREATE INDEX IX_d1809_TM ON d1809 (TM);
