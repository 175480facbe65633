# The 采购退货 list's statements: the head query (without and with the signed-in user's
# warehouse rights, before the filter's condition) and the lines of one document (${number}: quoted number).

-- case: Head
 SELECT d8102.noid,D1103.kh_gys_id,D1103.kg_name,d1007.ck_id, d1007.ck_name,d8102.bdate,d8102.edate,d1011.send_id, d1011.send_name,sys_user.user_id,sys_user.user_name, d1101.yw_id,d1101.yw_name,d8102.note, D1010.JY_ID, D1010.JY_NAME,d8102.t,d8102.sk,d8102.sdate FROM d8102 INNER JOIN D1103 ON d8102.kh_gys_id = D1103.kh_gys_id INNER JOIN sys_user ON d8102.user_id = sys_user.user_id INNER JOIN d1007 ON d8102.ck_id = d1007.ck_id INNER JOIN d1011 ON d8102.send_id = d1011.send_id INNER JOIN d1101 ON d8102.yw_id = d1101.yw_id   INNER JOIN   D1010 ON D8102.JY_ID = D1010.JY_ID 

-- case: HeadWithRights
 SELECT d8102.noid,D1103.kh_gys_id,D1103.kg_name,d1007.ck_id, d1007.ck_name,d8102.bdate,d8102.edate,d1011.send_id, d1011.send_name,sys_user.user_id,sys_user.user_name, d1101.yw_id,d1101.yw_name,d8102.note, D1010.JY_ID, D1010.JY_NAME,d8102.t,d8102.sk,d8102.sdate FROM d8102 INNER JOIN D1103 ON d8102.kh_gys_id = D1103.kh_gys_id INNER JOIN sys_user ON d8102.user_id = sys_user.user_id INNER JOIN d1007 ON d8102.ck_id = d1007.ck_id INNER JOIN d1011 ON d8102.send_id = d1011.send_id INNER JOIN d1101 ON d8102.yw_id = d1101.yw_id   INNER JOIN  sys_USER_CK ON d1007.CK_ID = sys_USER_CK.CK_ID AND (sys_USER_CK.user_id='U1') INNER JOIN   D1010 ON D8102.JY_ID = D1010.JY_ID 

-- case: Lines
SELECT D1800.K_ID, D1005.COL_ID, D1005.COL_NAME, D1800.WL_NAME,D1800.DW_NAME, D8102A.S0, D8102A.S1, D8102A.S2, D8102A.S3, D8102A.S4,D8102A.S5, D8102A.S6, D8102A.S7, D1006.M9, D1006.M8, D1006.M7, D1006.M6,D1006.M5, D1006.M4, D1006.M3, D1006.M2, D1006.M1, D1006.M0, D8102A.S9,D8102A.S8,  D8102A.SMONEY,D8102A.SJ, D8102A.NOTE FROM D1801 INNER JOIN D8102A ON D1801.WL_ID = D8102A.WL_ID INNER JOIN D1800 ON D1801.K_ID = D1800.K_ID INNER JOIN D1006 ON D1800.M_ID = D1006.M_ID INNER JOIN D1005 ON D1801.COL_ID = D1005.COL_ID WHERE (D8102A.NOID =${number})

-- case: Delete
delete from d8102 Where NOID=${number}
