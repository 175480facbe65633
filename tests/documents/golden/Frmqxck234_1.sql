# The arrival check's receipt batches: the state unquoted, the quantities unquoted, each line
# found by number and SKU.

-- case: Confirm
UPDATE D8303 SET y=1,YDATE=GETDATE(),YNAME='王经理',y_note='已点收',y_wc='0' WHERE NOID='T0305';
update D8303A  set  y0=3 ,y1=2 ,y2=0 ,y3=0 ,y4=0 ,y5=0 ,y6=0 ,y7=0 ,y8=0 ,y9=0 where (noid='T0305') and (wl_id='K0101');

-- case: Partial
UPDATE D8303 SET y=1,YDATE=GETDATE(),YNAME='王经理',y_note='',y_wc='1' WHERE NOID='T0305';
update D8303A  set  y0=2 ,y1=0 ,y2=0 ,y3=0 ,y4=0 ,y5=0 ,y6=0 ,y7=0 ,y8=0 ,y9=0 where (noid='T0305') and (wl_id='K0101');

-- case: QuitWithNothing
UPDATE D8303 SET y=0,YDATE=GETDATE(),YNAME='王经理',y_note='',y_wc='5' WHERE NOID='T0305';
update D8303A  set  y0=0 ,y1=0 ,y2=0 ,y3=0 ,y4=0 ,y5=0 ,y6=0 ,y7=0 ,y8=0 ,y9=0 where (noid='T0305') and (wl_id='K0101');
