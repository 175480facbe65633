# The loss/gain sheet entry's save batches. ${number}: the sheet's number.

-- case: Add
INSERT INTO d8301(NOID,T,CK_ID,BDATE,STRPARAM1,USER_ID, NOTE)  VALUES ('${number}','1','01','2026-03-18','赵六','U1','破损')
INSERT INTO d8301A  VALUES ('${number}','K0101','K01','01','01','2','-1','0','0','0','0','0','0','0','0',0,0,'');
UPDATE d8301A SET DJ=M.DJ,MONEY=(S0+S1+S2+S3+S4+S5+S6+S7+S8+S9)*M.DJ FROM D1800 M WHERE (d8301A.K_ID=M.K_ID) AND (d8301A.NOID='${number}');

-- case: Edit
UPDATE d8301 SET EDATE=GETDATE(),CK_ID ='01',BDATE='2026-03-10',STRPARAM1='赵六',NOTE='',USER_ID='U1' WHERE NOID='SY1';
delete from  d8301A WHERE NOID='SY1';
INSERT INTO d8301A  VALUES ('SY1','K0101','K01','01','01','-1','0','0','0','0','0','0','0','0','0',0,0,'');
INSERT INTO d8301A  VALUES ('SY1','K0203','K02','03','01','0','0','1','0','0','0','0','0','0','0',0,0,'');
UPDATE d8301A SET DJ=M.DJ,MONEY=(S0+S1+S2+S3+S4+S5+S6+S7+S8+S9)*M.DJ FROM D1800 M WHERE (d8301A.K_ID=M.K_ID) AND (d8301A.NOID='SY1');

-- case: CopyAdd
INSERT INTO d8301(NOID,T,CK_ID,BDATE,STRPARAM1,USER_ID, NOTE)  VALUES ('${number}','1','01','2026-03-10','赵六','U1','')
INSERT INTO d8301A  VALUES ('${number}','K0101','K01','01','01','-1','0','0','0','0','0','0','0','0','0',0,0,'');
UPDATE d8301A SET DJ=M.DJ,MONEY=(S0+S1+S2+S3+S4+S5+S6+S7+S8+S9)*M.DJ FROM D1800 M WHERE (d8301A.K_ID=M.K_ID) AND (d8301A.NOID='${number}');
