-- Company settings, users and their warehouse rights, report groupings, mobile page columns,
-- logs, and the host's own counters.

-- The single company and settings row. param is the comma-separated option list;
-- CK_END_DATE the first day of the open stock month (documents dated before it are closed).
CREATE TABLE sys_co (
    CO          VARCHAR(40)  NULL,
    FZR         VARCHAR(20)  NULL,
    TEL         VARCHAR(50)  NULL,
    FAX         VARCHAR(30)  NULL,
    ADDR        VARCHAR(80)  NULL,
    EMAIL       VARCHAR(50)  NULL,
    NOTE        VARCHAR(50)  NULL,
    BACKPATH    VARCHAR(255) NULL,
    BACKDAY     INT DEFAULT 0,
    PARAM       VARCHAR(255) NULL,
    PriceLen    INT DEFAULT 2,
    AmountLen   INT DEFAULT 2,
    QtyLen      INT DEFAULT 0,
    ck_date     INT DEFAULT 31,
    ck_qs       INT DEFAULT 0,
    CK_MENOY    INT DEFAULT 4,
    CK_END_DATE DATETIME NULL
);

-- Users. PWD_SALT and PWD_HASH are host-owned: the host's login stores a random salt and
-- the hex SHA-256 of salt followed by the password (UTF-8), both as lower-case hex text.
CREATE TABLE sys_user (
    USER_ID   VARCHAR(10) NOT NULL PRIMARY KEY,
    USER_NAME VARCHAR(10) NULL,
    PWD_SALT  VARCHAR(64) NULL,
    PWD_HASH  VARCHAR(64) NULL
);

-- Warehouse rights per user (positional, 3 columns). W: 0 read only, otherwise read and write.
CREATE TABLE sys_user_ck (
    USER_ID VARCHAR(10) NOT NULL,
    CK_ID   VARCHAR(4)  NOT NULL,
    W       INT DEFAULT 1
);

-- Grouping choices of the summary reports; GROUP_SQL is a T-SQL expression.
CREATE TABLE sys_group (
    GROUP_ID    INT NOT NULL,
    GROUP_NAME  VARCHAR(30) NULL,
    GROUP_SQL   VARCHAR(50) NULL,
    GROUP_CLASS VARCHAR(1)  NULL,
    GROUP_SHOW  BIT DEFAULT 1,
    SHOW_WIDTH  INT DEFAULT 0,
    A BIT DEFAULT 0, B BIT DEFAULT 0, C BIT DEFAULT 0,
    D BIT DEFAULT 0, E BIT DEFAULT 0, F BIT DEFAULT 0,
    G BIT DEFAULT 0, H BIT DEFAULT 0, I BIT DEFAULT 0,
    J BIT DEFAULT 0, K BIT DEFAULT 0, L BIT DEFAULT 0,
    M BIT DEFAULT 0, N BIT DEFAULT 0, O BIT DEFAULT 0,
    P BIT DEFAULT 0,
    ORDERBY     INT DEFAULT 0
);

-- Column settings of the mobile web pages. field_type 'm' rows hold the ten page texts
-- (field_show = row number 1-10).
CREATE TABLE sys_web (
    id          INT NOT NULL PRIMARY KEY,
    field_table VARCHAR(10) NULL,
    field_name  VARCHAR(100) NULL,
    field_width INT DEFAULT 0,
    field_show  INT DEFAULT 1,
    field_type  VARCHAR(10) NULL,
    field_order INT DEFAULT 0
);

-- Logs and backups of the host: only system initialisation names them (it clears them).
CREATE TABLE sys_log_iud (ID INT NULL, USER_ID VARCHAR(10) NULL, BDATE DATETIME NULL, FUNC_NO VARCHAR(10) NULL, NOTE VARCHAR(255) NULL);
CREATE TABLE sys_log_err (ID INT NULL, USER_ID VARCHAR(10) NULL, BDATE DATETIME NULL, NOTE VARCHAR(255) NULL);
CREATE TABLE sys_log_login (ID INT NULL, USER_ID VARCHAR(10) NULL, BDATE DATETIME NULL, NOTE VARCHAR(255) NULL);
CREATE TABLE sys_back (ID INT NULL, BDATE DATETIME NULL, BACKPATH VARCHAR(255) NULL, NOTE VARCHAR(255) NULL);

-- Host-owned: the document number counters behind GetNOID, one row per function code and
-- month (PERIOD = yymm). The number is FUNC_NO (3 characters) + PERIOD + SEQ as 5 digits.
CREATE TABLE sys_noid (
    FUNC_NO VARCHAR(10) NOT NULL,
    PERIOD  VARCHAR(4)  NOT NULL,
    SEQ     INT NOT NULL DEFAULT 0,
    PRIMARY KEY (FUNC_NO, PERIOD)
);
