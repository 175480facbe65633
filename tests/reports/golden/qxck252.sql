# The procedure calls of the report, one per dialog choice (written out from the report's definition).
-- case: default: by colour and size, only articles that moved
EXEC SYS_ZM @param3=0,@BDATE='2026-03-01',@EDATE='2026-03-19',@ck_id1='',@param1=True
-- case: by style, warehouse 01, article K01, rights
EXEC SYS_ZM @param3=1,@BDATE='2026-03-01',@EDATE='2026-03-19',@ck_id1='01',@wl_id='K01',@CheckCk=1,@userid='U1'
-- case: by category, every article, range ending 31 December
EXEC SYS_ZM @param3=2,@BDATE='2025-12-01',@EDATE='2026-01-01',@ck_id1=''
-- case: first day of the month
EXEC SYS_ZM @param3=0,@BDATE='2026-04-01',@EDATE='2026-04-02',@ck_id1='',@param1=True
