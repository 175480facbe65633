# The conditions the D8102 filter dialog builds (today is 2026-03-18).

-- case: ThisMonth
(D8102.BDATE>='2026-03-01') AND (D8102.BDATE<='2026-03-18') 

-- case: OneDay
(D8102.BDATE>='2026-03-05') AND (D8102.BDATE<='2026-03-05') 

-- case: UpperOnly
(D8102.BDATE>='2026-03-01') AND (D8102.BDATE<='2026-03-18')   AND (D8102.NOID<='N0305')

-- case: LowerOnly
(D8102.BDATE>='2026-03-01') AND (D8102.BDATE<='2026-03-18')   AND (D8102.NOID>='N0305B')

-- case: Everything
(D8102.BDATE>='2026-03-01') AND (D8102.BDATE<='2026-03-18')  AND (d1103.KH_gys_ID = 'G01') AND (d1007.ck_ID = '01')  AND (D8102.NOID>='N0300')  AND (D8102.NOID<='N0399')
