# Golden statements of the purchase annual report (263): one case per dialog choice. A statement is one line;
# it is broken here ahead of the blanks before each "UNION  ALL"; its lines are joined again with nothing.
-- case: current year
EXEC SYS_JX @param1=' SELECT convert(varchar(20),1920) as YY, SHOW_WIDTH, 0 as MONEY  FROM SYS_GROUP  where(GROUP_ID = 263)
  UNION  ALL  SELECT convert(varchar(20),YEAR(BDATE))+''进'' as YY, MONTH(BDATE) as MM,MONEY  FROM D8101A INNER JOIN D8101 ON D8101A.NOID = D8101.NOID  where  (BDATE>=''2026-01-01'' AND BDATE<''2026-03-19'')
 UNION  ALL  SELECT convert(varchar(20),YEAR(BDATE))+''退'' as YY, MONTH(BDATE) as MM,0-sMONEY  FROM D8102A INNER JOIN D8102 ON D8102A.NOID = D8102.NOID  where  (BDATE>=''2026-01-01'' AND BDATE<''2026-03-19'')',@param2='wl_id',@param3='ck_name',@param4='kc',@selectstr='',@innerstr='order by wl_id'
-- case: across the year end
EXEC SYS_JX @param1=' SELECT convert(varchar(20),1920) as YY, SHOW_WIDTH, 0 as MONEY  FROM SYS_GROUP  where(GROUP_ID = 263)
  UNION  ALL  SELECT convert(varchar(20),YEAR(BDATE))+''进'' as YY, MONTH(BDATE) as MM,MONEY  FROM D8101A INNER JOIN D8101 ON D8101A.NOID = D8101.NOID  where  (BDATE>=''2025-12-01'' AND BDATE<''2026-03-01'')
 UNION  ALL  SELECT convert(varchar(20),YEAR(BDATE))+''退'' as YY, MONTH(BDATE) as MM,0-sMONEY  FROM D8102A INNER JOIN D8102 ON D8102A.NOID = D8102.NOID  where  (BDATE>=''2025-12-01'' AND BDATE<''2026-03-01'')',@param2='wl_id',@param3='ck_name',@param4='kc',@selectstr='',@innerstr='order by wl_id'
-- case: style
EXEC SYS_JX @param1=' SELECT convert(varchar(20),1920) as YY, SHOW_WIDTH, 0 as MONEY  FROM SYS_GROUP  where(GROUP_ID = 263)
  UNION  ALL  SELECT convert(varchar(20),YEAR(BDATE))+''进'' as YY, MONTH(BDATE) as MM,MONEY  FROM D8101A INNER JOIN D8101 ON D8101A.NOID = D8101.NOID  where  (BDATE>=''2026-01-01'' AND BDATE<''2026-03-19'') AND (K_ID = ''K02'')
 UNION  ALL  SELECT convert(varchar(20),YEAR(BDATE))+''退'' as YY, MONTH(BDATE) as MM,0-sMONEY  FROM D8102A INNER JOIN D8102 ON D8102A.NOID = D8102.NOID  where  (BDATE>=''2026-01-01'' AND BDATE<''2026-03-19'') AND (K_ID = ''K02'')',@param2='wl_id',@param3='ck_name',@param4='kc',@selectstr='',@innerstr='order by wl_id'
-- case: hostile style
EXEC SYS_JX @param1=' SELECT convert(varchar(20),1920) as YY, SHOW_WIDTH, 0 as MONEY  FROM SYS_GROUP  where(GROUP_ID = 263)
  UNION  ALL  SELECT convert(varchar(20),YEAR(BDATE))+''进'' as YY, MONTH(BDATE) as MM,MONEY  FROM D8101A INNER JOIN D8101 ON D8101A.NOID = D8101.NOID  where  (BDATE>=''2026-01-01'' AND BDATE<''2026-03-19'') AND (K_ID = ''K''''01xxxxxxxxxxxxxxxx'')
 UNION  ALL  SELECT convert(varchar(20),YEAR(BDATE))+''退'' as YY, MONTH(BDATE) as MM,0-sMONEY  FROM D8102A INNER JOIN D8102 ON D8102A.NOID = D8102.NOID  where  (BDATE>=''2026-01-01'' AND BDATE<''2026-03-19'') AND (K_ID = ''K''''01xxxxxxxxxxxxxxxx'')',@param2='wl_id',@param3='ck_name',@param4='kc',@selectstr='',@innerstr='order by wl_id'
