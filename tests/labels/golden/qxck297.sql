# Statements of the supervision-code screens, one block each: "-- case: name", then the statement
# on one line (${warehouse} and ${code} are filled in by the tests).
-- case: list
SELECT D1805.*, D702.VIPNAME, D1007.CK_NAME FROM D1805 LEFT OUTER JOIN D1007 ON D1805.CK_ID = D1007.CK_ID LEFT OUTER JOIN D702 ON D1805.VIPID = D702.VIPID
-- case: list a1
SELECT D1805.*, D702.VIPNAME, D1007.CK_NAME FROM D1805 LEFT OUTER JOIN D1007 ON D1805.CK_ID = D1007.CK_ID LEFT OUTER JOIN D702 ON D1805.VIPID = D702.VIPID WHERE (d1805.jgm like '%A1%')
-- case: list quote
SELECT D1805.*, D702.VIPNAME, D1007.CK_NAME FROM D1805 LEFT OUTER JOIN D1007 ON D1805.CK_ID = D1007.CK_ID LEFT OUTER JOIN D702 ON D1805.VIPID = D702.VIPID WHERE (d1805.jgm like '%x'' OR ''1''=''1%')
-- case: dispatch
update d1805 set date2=getdate(),ck_id='${warehouse}' where jgm='${code}'
-- case: delete
delete from D1805 Where jgm='JGB201'
