# The order entry's save batches. ${number}: the order's number.

-- case: Add
INSERT INTO D8203(NOID,CK_ID, BDATE,  USER_ID, NOTE) VALUES ('${number}','01','2026-03-18','U1','春季补单');
INSERT INTO D8203A (NOID, WL_ID, K_ID, COL_ID, CK_ID, S0, S1, S2, S3, S4, S5, S6, S7, S8, S9, DJ,  MONEY,  NOTE) VALUES ('${number}','K0102','K01','02','01','3','2','0','0','0','0','0','0','0','0','45','225','');

-- case: Edit
UPDATE D8203 SET EDATE=GETDATE(),CK_ID='02',NOTE='改到东门' WHERE noid='DD1';
delete from  D8203A WHERE NOID='DD1';
INSERT INTO D8203A (NOID, WL_ID, K_ID, COL_ID, CK_ID, S0, S1, S2, S3, S4, S5, S6, S7, S8, S9, DJ,  MONEY,  NOTE) VALUES ('DD1','K0101','K01','01','02','1','2','0','0','0','0','0','0','0','0','50','150','');
INSERT INTO D8203A (NOID, WL_ID, K_ID, COL_ID, CK_ID, S0, S1, S2, S3, S4, S5, S6, S7, S8, S9, DJ,  MONEY,  NOTE) VALUES ('DD1','K0203','K02','03','02','0','1','0','0','0','0','0','0','0','0','80','80','');

-- case: CopyAdd
INSERT INTO D8203(NOID,CK_ID, BDATE,  USER_ID, NOTE) VALUES ('${number}','01','2026-03-10','U1','首单');
INSERT INTO D8203A (NOID, WL_ID, K_ID, COL_ID, CK_ID, S0, S1, S2, S3, S4, S5, S6, S7, S8, S9, DJ,  MONEY,  NOTE) VALUES ('${number}','K0101','K01','01','01','1','2','0','0','0','0','0','0','0','0','50','150','');
