# The count sheet entry's save batches. ${number}: the sheet's number.

-- case: Add
INSERT INTO d8300(NOID,T,CK_ID,BDATE,STRPARAM1,USER_ID, NOTE)  VALUES ('${number}','0','01','2026-03-18','李四','U1','货架A')
INSERT INTO d8300A  VALUES ('${number}','K0101','K01','01','01','2','0','0','0','0','0','0','0','0','0',0,0,'');
INSERT INTO d8300A  VALUES ('${number}','K0203','K02','03','01','0','-1','0','0','0','0','0','0','0','0',0,0,'');
UPDATE d8300A SET DJ=M.DJ,MONEY=(S0+S1+S2+S3+S4+S5+S6+S7+S8+S9)*M.DJ FROM D1800 M WHERE (d8300A.K_ID=M.K_ID) AND (d8300A.NOID='${number}');

-- case: Edit
UPDATE d8300 SET EDATE=GETDATE(),T=0,d8301noid=null,CK_ID ='01',BDATE='2026-03-10',STRPARAM1='李四',NOTE='',USER_ID='U1' WHERE NOID='PD1';
delete from  d8300A WHERE NOID='PD1';
INSERT INTO d8300A  VALUES ('PD1','K0101','K01','01','01','2','0','0','0','0','0','0','0','0','0',0,0,'');
INSERT INTO d8300A  VALUES ('PD1','K0102','K01','02','01','0','4','0','0','0','0','0','0','0','0',0,0,'');
UPDATE d8300A SET DJ=M.DJ,MONEY=(S0+S1+S2+S3+S4+S5+S6+S7+S8+S9)*M.DJ FROM D1800 M WHERE (d8300A.K_ID=M.K_ID) AND (d8300A.NOID='PD1');

-- case: CopyAdd
INSERT INTO d8300(NOID,T,CK_ID,BDATE,STRPARAM1,USER_ID, NOTE)  VALUES ('${number}','0','01','2026-03-10','李四','U1','')
INSERT INTO d8300A  VALUES ('${number}','K0101','K01','01','01','2','0','0','0','0','0','0','0','0','0',0,0,'');
UPDATE d8300A SET DJ=M.DJ,MONEY=(S0+S1+S2+S3+S4+S5+S6+S7+S8+S9)*M.DJ FROM D1800 M WHERE (d8300A.K_ID=M.K_ID) AND (d8300A.NOID='${number}');
