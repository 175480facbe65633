# The arrival-check list: only effective transfers, the filter's condition joined with " and ",
# rights on the receiving warehouse; the line statement with two blanks before D8303A.SMONEY.

-- case: Head
 SELECT d8303.noid,d8303.y,d8303.yname,d8303.ydate,d8303.Y_WC,d8303.y_NOTE,d1007.ck_id,d1007.ck_name,d8303.bdate,d8303.edate, d8303.strparam1,sys_user.user_id,sys_user.user_name,d8303.note,CONVERT(tinyint,D8303.y) AS T,D8303.sk,D8303.sdate, d8303.ck_id_in,d1007_1.ck_name AS ck_name_in FROM d8303 INNER JOIN d1007 d1007_1 ON d8303.ck_id_in = d1007_1.ck_id INNER JOIN d1007 ON d8303.ck_id = d1007.ck_id INNER JOIN sys_user ON d8303.user_id = sys_user.user_id WHERE (D8303.T = 1) and (D8303.BDATE>='2026-03-01') AND (D8303.BDATE<='2026-03-18') 

-- case: HeadWithRights
 SELECT d8303.noid,d8303.y,d8303.yname,d8303.ydate,d8303.Y_WC,d8303.y_NOTE,d1007.ck_id,d1007.ck_name,d8303.bdate,d8303.edate, d8303.strparam1,sys_user.user_id,sys_user.user_name,d8303.note,CONVERT(tinyint,D8303.y) AS T,D8303.sk,D8303.sdate, d8303.ck_id_in,d1007_1.ck_name AS ck_name_in FROM d8303 INNER JOIN d1007 d1007_1 ON d8303.ck_id_in = d1007_1.ck_id INNER JOIN d1007 ON d8303.ck_id = d1007.ck_id INNER JOIN sys_USER_CK ON d1007_1.CK_ID = sys_USER_CK.CK_ID AND (sys_USER_CK.user_id='U1') INNER JOIN  sys_user ON d8303.user_id = sys_user.user_id WHERE (D8303.T = 1) and (D8303.BDATE>='2026-03-01') AND (D8303.BDATE<='2026-03-18') 

-- case: Lines
SELECT D1800.K_ID, D1005.COL_ID, D1005.COL_NAME, D1800.WL_NAME,D1800.DW_NAME, D8303A.S0, D8303A.S1, D8303A.S2, D8303A.S3, D8303A.S4,D8303A.S5, D8303A.S6, D8303A.S7, D1006.M9, D1006.M8, D1006.M7, D1006.M6,D1006.M5, D1006.M4, D1006.M3, D1006.M2, D1006.M1, D1006.M0, D8303A.S9,D8303A.S8,  D8303A.SMONEY,D8303A.SJ,D8303A.NOTE, D8303A.Y0,D8303A.Y1,D8303A.Y2,D8303A.Y3,D8303A.Y4,D8303A.Y5,D8303A.Y6,D8303A.Y7,D8303A.Y8,D8303A.Y9 FROM D1801 INNER JOIN D8303A ON D1801.WL_ID = D8303A.WL_ID INNER JOIN D1800 ON D1801.K_ID = D1800.K_ID INNER JOIN D1006 ON D1800.M_ID = D1006.M_ID INNER JOIN D1005 ON D1801.COL_ID = D1005.COL_ID WHERE (D8303A.NOID =%s)
