# The statements of the period screens, character for character. One block per statement:
# a line "-- case: name" and the statement on the lines that follow (joined without line
# breaks). Values the screens fill in are written ${like_this}.

-- case: close
UPDATE sys_CO  SET CK_END_DATE = (SELECT DATEADD(m, 1, DATEADD(mm, DATEDIFF(mm, 0, (select CK_END_DATE from sys_CO)), 0))) 

-- case: reverse-close
UPDATE sys_CO  SET CK_END_DATE = (SELECT DATEADD(m, - 1, DATEADD(mm, DATEDIFF(mm, 0, (select CK_END_DATE from sys_CO)), 0))) 

-- case: open-period
select CK_END_DATE from sys_co

-- case: balance-check
select *  from V_CHECKKC

-- case: cost-recalculation
EXEC SYS_CBKS

-- case: balance-repair
update d1802 set k0=t.c0,k1=t.c1, k2=t.c2,k3=t.c3,k4=t.c4,k5=t.c5,k6=t.c6,k7=t.c7,k8=t.c8,k9=t.c9 from V_CHECKKC t where d1802.wl_id=t.wl_id and d1802.ck_id=t.ck_id; UPDATE  d1800 SET KC=T.K FROM ( SELECT D1801.K_ID,SUM(D1802.K0 + D1802.K1 + D1802.K2 + D1802.K3 + D1802.K4 + D1802.K5 + D1802.K6 + D1802.K7 + D1802.K8 + D1802.K9) AS k FROM D1802 INNER JOIN D1801 ON D1802.WL_ID = D1801.WL_ID  GROUP BY D1801.K_ID) t WHERE D1800.K_ID=T.K_ID AND D1800.KC<>T.K 

-- case: opening-stock-list
 SELECT D1802.WL_ID+D1802.CK_ID AS ID,D1007.CK_ID,D1800.K_ID, D1801.WL_ID, D1800.WL_NAME, D1009.PP_name as PP,   D1800.DW_NAME, D1004.CLASS_ID, D1005.COL_NAME, D1004.CLASS_NAME,   D1007.CK_NAME, D1802.B0, D1802.B1, D1802.B2, D1802.B3, D1802.B4, D1802.B5, D1802.B6, D1802.B7, D1802.B8, D1802.B9, D1802.B0 + D1802.B1 + D1802.B2 + D1802.B3 + D1802.B4 + D1802.B5 + D1802.B6 + D1802.B7   + D1802.B8 + D1802.B9 AS STOT, D1802.BEGIN_MONEY,D1802.BEGIN_DJ, D1006.M0, D1006.M1,  D1006.M2, D1006.M3, D1006.M4, D1006.M5, D1006.M6, D1006.M7, D1006.M8, D1006.M9,D1802.BDATE FROM D1801 INNER JOIN  D1802 ON D1801.WL_ID = D1802.WL_ID INNER JOIN  D1007 ON D1802.CK_ID = D1007.CK_ID INNER JOIN ${rights} D1800 ON D1801.K_ID = D1800.K_ID INNER JOIN  D1004 ON D1800.CLASS_ID = D1004.CLASS_ID INNER JOIN  D1006 ON D1800.M_ID = D1006.M_ID INNER JOIN  D1005 ON D1801.COL_ID = D1005.COL_ID INNER JOIN  D1009 ON D1800.PP_ID = D1009.PP_ID

-- case: opening-stock-rights
 sys_USER_CK u on u.ck_id=d1007.ck_id and (user_id='${user}') inner join 

-- case: opening-stock-delete
delete from D1802 WHERE (WL_ID + CK_ID =${key})
