-- Views the module reads. Created after the tables, through the same translation as every
-- other statement. (V_CHECKKC and the movement stream V_QX_MOVES are generated from the
-- posting rules by the database layer.)

-- Barcodes the lines of a purchase receipt need: one row per SKU of the receipt and size of
-- its style's size group, by the style's barcode rule TMI (0 the style code, 1 the free
-- barcode already kept in d1809, 2 style + colour mark + size mark, 3 style + size mark +
-- colour mark; marks from d1005.S and d1006.BS0..BS9).
CREATE VIEW V1809 AS
SELECT a.NOID, a.WL_ID, '0' AS mindex, a.K_ID,
       CASE st.TMI WHEN 0 THEN a.K_ID
                   WHEN 1 THEN b.TM
                   WHEN 2 THEN a.K_ID + ISNULL(c.S, '') + ISNULL(z.BS0, '')
                   WHEN 3 THEN a.K_ID + ISNULL(z.BS0, '') + ISNULL(c.S, '') END AS tm
FROM D8101A a
INNER JOIN d1800 st ON st.K_ID = a.K_ID
LEFT JOIN d1005 c ON c.COL_ID = a.COL_ID
LEFT JOIN d1006 z ON z.M_ID = st.M_ID
LEFT JOIN d1809 b ON b.WL_ID = a.WL_ID AND b.M_INDEX = '0'
WHERE ISNULL(z.M0, '') <> '' AND (st.TMI <> 1 OR b.TM IS NOT NULL)
UNION
SELECT a.NOID, a.WL_ID, '1' AS mindex, a.K_ID,
       CASE st.TMI WHEN 0 THEN a.K_ID
                   WHEN 1 THEN b.TM
                   WHEN 2 THEN a.K_ID + ISNULL(c.S, '') + ISNULL(z.BS1, '')
                   WHEN 3 THEN a.K_ID + ISNULL(z.BS1, '') + ISNULL(c.S, '') END AS tm
FROM D8101A a
INNER JOIN d1800 st ON st.K_ID = a.K_ID
LEFT JOIN d1005 c ON c.COL_ID = a.COL_ID
LEFT JOIN d1006 z ON z.M_ID = st.M_ID
LEFT JOIN d1809 b ON b.WL_ID = a.WL_ID AND b.M_INDEX = '1'
WHERE ISNULL(z.M1, '') <> '' AND (st.TMI <> 1 OR b.TM IS NOT NULL)
UNION
SELECT a.NOID, a.WL_ID, '2' AS mindex, a.K_ID,
       CASE st.TMI WHEN 0 THEN a.K_ID
                   WHEN 1 THEN b.TM
                   WHEN 2 THEN a.K_ID + ISNULL(c.S, '') + ISNULL(z.BS2, '')
                   WHEN 3 THEN a.K_ID + ISNULL(z.BS2, '') + ISNULL(c.S, '') END AS tm
FROM D8101A a
INNER JOIN d1800 st ON st.K_ID = a.K_ID
LEFT JOIN d1005 c ON c.COL_ID = a.COL_ID
LEFT JOIN d1006 z ON z.M_ID = st.M_ID
LEFT JOIN d1809 b ON b.WL_ID = a.WL_ID AND b.M_INDEX = '2'
WHERE ISNULL(z.M2, '') <> '' AND (st.TMI <> 1 OR b.TM IS NOT NULL)
UNION
SELECT a.NOID, a.WL_ID, '3' AS mindex, a.K_ID,
       CASE st.TMI WHEN 0 THEN a.K_ID
                   WHEN 1 THEN b.TM
                   WHEN 2 THEN a.K_ID + ISNULL(c.S, '') + ISNULL(z.BS3, '')
                   WHEN 3 THEN a.K_ID + ISNULL(z.BS3, '') + ISNULL(c.S, '') END AS tm
FROM D8101A a
INNER JOIN d1800 st ON st.K_ID = a.K_ID
LEFT JOIN d1005 c ON c.COL_ID = a.COL_ID
LEFT JOIN d1006 z ON z.M_ID = st.M_ID
LEFT JOIN d1809 b ON b.WL_ID = a.WL_ID AND b.M_INDEX = '3'
WHERE ISNULL(z.M3, '') <> '' AND (st.TMI <> 1 OR b.TM IS NOT NULL)
UNION
SELECT a.NOID, a.WL_ID, '4' AS mindex, a.K_ID,
       CASE st.TMI WHEN 0 THEN a.K_ID
                   WHEN 1 THEN b.TM
                   WHEN 2 THEN a.K_ID + ISNULL(c.S, '') + ISNULL(z.BS4, '')
                   WHEN 3 THEN a.K_ID + ISNULL(z.BS4, '') + ISNULL(c.S, '') END AS tm
FROM D8101A a
INNER JOIN d1800 st ON st.K_ID = a.K_ID
LEFT JOIN d1005 c ON c.COL_ID = a.COL_ID
LEFT JOIN d1006 z ON z.M_ID = st.M_ID
LEFT JOIN d1809 b ON b.WL_ID = a.WL_ID AND b.M_INDEX = '4'
WHERE ISNULL(z.M4, '') <> '' AND (st.TMI <> 1 OR b.TM IS NOT NULL)
UNION
SELECT a.NOID, a.WL_ID, '5' AS mindex, a.K_ID,
       CASE st.TMI WHEN 0 THEN a.K_ID
                   WHEN 1 THEN b.TM
                   WHEN 2 THEN a.K_ID + ISNULL(c.S, '') + ISNULL(z.BS5, '')
                   WHEN 3 THEN a.K_ID + ISNULL(z.BS5, '') + ISNULL(c.S, '') END AS tm
FROM D8101A a
INNER JOIN d1800 st ON st.K_ID = a.K_ID
LEFT JOIN d1005 c ON c.COL_ID = a.COL_ID
LEFT JOIN d1006 z ON z.M_ID = st.M_ID
LEFT JOIN d1809 b ON b.WL_ID = a.WL_ID AND b.M_INDEX = '5'
WHERE ISNULL(z.M5, '') <> '' AND (st.TMI <> 1 OR b.TM IS NOT NULL)
UNION
SELECT a.NOID, a.WL_ID, '6' AS mindex, a.K_ID,
       CASE st.TMI WHEN 0 THEN a.K_ID
                   WHEN 1 THEN b.TM
                   WHEN 2 THEN a.K_ID + ISNULL(c.S, '') + ISNULL(z.BS6, '')
                   WHEN 3 THEN a.K_ID + ISNULL(z.BS6, '') + ISNULL(c.S, '') END AS tm
FROM D8101A a
INNER JOIN d1800 st ON st.K_ID = a.K_ID
LEFT JOIN d1005 c ON c.COL_ID = a.COL_ID
LEFT JOIN d1006 z ON z.M_ID = st.M_ID
LEFT JOIN d1809 b ON b.WL_ID = a.WL_ID AND b.M_INDEX = '6'
WHERE ISNULL(z.M6, '') <> '' AND (st.TMI <> 1 OR b.TM IS NOT NULL)
UNION
SELECT a.NOID, a.WL_ID, '7' AS mindex, a.K_ID,
       CASE st.TMI WHEN 0 THEN a.K_ID
                   WHEN 1 THEN b.TM
                   WHEN 2 THEN a.K_ID + ISNULL(c.S, '') + ISNULL(z.BS7, '')
                   WHEN 3 THEN a.K_ID + ISNULL(z.BS7, '') + ISNULL(c.S, '') END AS tm
FROM D8101A a
INNER JOIN d1800 st ON st.K_ID = a.K_ID
LEFT JOIN d1005 c ON c.COL_ID = a.COL_ID
LEFT JOIN d1006 z ON z.M_ID = st.M_ID
LEFT JOIN d1809 b ON b.WL_ID = a.WL_ID AND b.M_INDEX = '7'
WHERE ISNULL(z.M7, '') <> '' AND (st.TMI <> 1 OR b.TM IS NOT NULL)
UNION
SELECT a.NOID, a.WL_ID, '8' AS mindex, a.K_ID,
       CASE st.TMI WHEN 0 THEN a.K_ID
                   WHEN 1 THEN b.TM
                   WHEN 2 THEN a.K_ID + ISNULL(c.S, '') + ISNULL(z.BS8, '')
                   WHEN 3 THEN a.K_ID + ISNULL(z.BS8, '') + ISNULL(c.S, '') END AS tm
FROM D8101A a
INNER JOIN d1800 st ON st.K_ID = a.K_ID
LEFT JOIN d1005 c ON c.COL_ID = a.COL_ID
LEFT JOIN d1006 z ON z.M_ID = st.M_ID
LEFT JOIN d1809 b ON b.WL_ID = a.WL_ID AND b.M_INDEX = '8'
WHERE ISNULL(z.M8, '') <> '' AND (st.TMI <> 1 OR b.TM IS NOT NULL)
UNION
SELECT a.NOID, a.WL_ID, '9' AS mindex, a.K_ID,
       CASE st.TMI WHEN 0 THEN a.K_ID
                   WHEN 1 THEN b.TM
                   WHEN 2 THEN a.K_ID + ISNULL(c.S, '') + ISNULL(z.BS9, '')
                   WHEN 3 THEN a.K_ID + ISNULL(z.BS9, '') + ISNULL(c.S, '') END AS tm
FROM D8101A a
INNER JOIN d1800 st ON st.K_ID = a.K_ID
LEFT JOIN d1005 c ON c.COL_ID = a.COL_ID
LEFT JOIN d1006 z ON z.M_ID = st.M_ID
LEFT JOIN d1809 b ON b.WL_ID = a.WL_ID AND b.M_INDEX = '9'
WHERE ISNULL(z.M9, '') <> '' AND (st.TMI <> 1 OR b.TM IS NOT NULL);

-- Transfer lines with each warehouse they touch (sending and receiving).
CREATE VIEW V_D8303A AS
SELECT a.NOID, a.WL_ID, a.K_ID, a.CK_ID, st.CHECK_KC
FROM D8303A a LEFT JOIN d1800 st ON st.K_ID = a.K_ID
UNION
SELECT a.NOID, a.WL_ID, a.K_ID, a.CK_ID_IN AS CK_ID, st.CHECK_KC
FROM D8303A a LEFT JOIN d1800 st ON st.K_ID = a.K_ID;

-- Point-of-sale lines with their ticket's date, warehouse and member, and the SKU's style.
CREATE VIEW v_D712 AS
SELECT b.NOID, h.BDATE, h.CK_ID, h.VIPID, h.YW_ID, b.WL_ID, s.K_ID, s.COL_ID,
       b.S0, b.S1, b.S2, b.S3, b.S4, b.S5, b.S6, b.S7, b.S8, b.S9,
       b.SJ, b.SMONEY, b.ZK, b.ODJ, b.OMONEY, b.MONEY, b.NOTE
FROM d712a b
INNER JOIN d712 h ON h.NOID = b.NOID
LEFT JOIN d1801 s ON s.WL_ID = b.WL_ID;
