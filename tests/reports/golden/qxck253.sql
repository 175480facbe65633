# The procedure calls of the report, one per dialog choice (written out from the report's definition).
-- case: default, cost shown
EXEC SYS_ZM @param3=0,@BDATE='2026-03-01',@EDATE='2026-03-19',@ck_id1='',@param1=True,@param2=True
-- case: by style, cost hidden
EXEC SYS_ZM @param3=1,@BDATE='2026-03-01',@EDATE='2026-03-19',@ck_id1='',@param1=True,@param2=False
