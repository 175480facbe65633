# The procedure calls of the report, one per dialog choice (written out from the report's definition).
-- case: default
EXEC SYS_ZM @param=1,@param3=0,@BDATE='2026-03-01',@EDATE='2026-03-19',@ck_id1='',@param1=True,@param2=True
-- case: barcode
EXEC SYS_ZM @param=1,@param3=0,@BDATE='2026-03-01',@EDATE='2026-03-19',@ck_id1='',@wl_id='6900000000011',@param2=True
-- case: quoted article
EXEC SYS_ZM @param=1,@param3=0,@BDATE='2026-03-01',@EDATE='2026-03-19',@ck_id1='',@wl_id='K''01x',@param2=True
