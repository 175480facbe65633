# The conditions the D8201 filter dialog builds (today is 2026-03-18).

-- case: ThisMonth
(D8201.BDATE>='2026-03-01') AND (D8201.BDATE<='2026-03-18') 

-- case: OneDay
(D8201.BDATE>='2026-03-05') AND (D8201.BDATE<='2026-03-05') 

-- case: UpperOnly
(D8201.BDATE>='2026-03-01') AND (D8201.BDATE<='2026-03-18')   AND (D8201.NOID<='N0305')

-- case: LowerOnly
(D8201.BDATE>='2026-03-01') AND (D8201.BDATE<='2026-03-18')   AND (D8201.NOID>='N0305B')

-- case: Everything
(D8201.BDATE>='2026-03-01') AND (D8201.BDATE<='2026-03-18')  AND (d1102.KH_gys_ID = 'C01') AND (d1007.ck_ID = '01')  AND (D8201.NOID>='N0300')  AND (D8201.NOID<='N0399')
