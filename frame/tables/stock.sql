-- Stock per SKU and warehouse. K0..K9 is the current quantity per size position and KC their
-- total (kept equal to the sum by the database); B0..B9 the opening quantities. Document saves
-- insert rows with only WL_ID, CK_ID and CHECK_KC, so every quantity and opening column
-- defaults to 0. Quantities are moved by the database's posting of effective documents only.
CREATE TABLE d1802 (
    WL_ID       VARCHAR(21) NOT NULL,
    CK_ID       VARCHAR(4)  NOT NULL,
    K0 INT NOT NULL DEFAULT 0, K1 INT NOT NULL DEFAULT 0, K2 INT NOT NULL DEFAULT 0,
    K3 INT NOT NULL DEFAULT 0, K4 INT NOT NULL DEFAULT 0, K5 INT NOT NULL DEFAULT 0,
    K6 INT NOT NULL DEFAULT 0, K7 INT NOT NULL DEFAULT 0, K8 INT NOT NULL DEFAULT 0,
    K9 INT NOT NULL DEFAULT 0,
    KC INT NOT NULL DEFAULT 0,
    B0 INT NOT NULL DEFAULT 0, B1 INT NOT NULL DEFAULT 0, B2 INT NOT NULL DEFAULT 0,
    B3 INT NOT NULL DEFAULT 0, B4 INT NOT NULL DEFAULT 0, B5 INT NOT NULL DEFAULT 0,
    B6 INT NOT NULL DEFAULT 0, B7 INT NOT NULL DEFAULT 0, B8 INT NOT NULL DEFAULT 0,
    B9 INT NOT NULL DEFAULT 0,
    BDATE       DATETIME NULL,
    BEGIN_SL    INT           NOT NULL DEFAULT 0,
    BEGIN_DJ    DECIMAL(18,2) NOT NULL DEFAULT 0,
    BEGIN_MONEY DECIMAL(18,2) NOT NULL DEFAULT 0,
    CHECK_KC    INT           NOT NULL DEFAULT 0,
    PRIMARY KEY (WL_ID, CK_ID)
);

CREATE INDEX IX_d1802_CK ON d1802 (CK_ID);
