-- Views the module reads. Created after the tables, through the same translation as every
-- other statement. (V_CHECKKC and the movement stream V_QX_MOVES are generated from the
-- posting rules by the database layer.) The views are single SELECTs (no UNION of arms) so
-- that a filter on NOID reaches the line table's index instead of scanning every document.

-- Barcodes the lines of a purchase receipt need: one row per SKU of the receipt and size of
-- its style's size group, by the style's barcode rule TMI (0 the style code, 1 the free
-- barcode already kept in d1809, 2 style + colour mark + size mark, 3 style + size mark +
-- colour mark; marks from d1005.S and d1006.BS0..BS9).
CREATE VIEW V1809 AS
SELECT DISTINCT a.NOID, a.WL_ID, x.mindex, a.K_ID,
       CASE st.TMI WHEN 0 THEN a.K_ID
                   WHEN 1 THEN b.TM
                   WHEN 2 THEN a.K_ID + ISNULL(c.S, '') + ISNULL(x.size_mark, '')
                   WHEN 3 THEN a.K_ID + ISNULL(x.size_mark, '') + ISNULL(c.S, '') END AS tm
FROM D8101A a
INNER JOIN d1800 st ON st.K_ID = a.K_ID
INNER JOIN (
    SELECT z.M_ID, '0' AS mindex, z.M0 AS size_name, z.BS0 AS size_mark FROM d1006 z
    UNION ALL SELECT z.M_ID, '1' AS mindex, z.M1 AS size_name, z.BS1 AS size_mark FROM d1006 z
    UNION ALL SELECT z.M_ID, '2' AS mindex, z.M2 AS size_name, z.BS2 AS size_mark FROM d1006 z
    UNION ALL SELECT z.M_ID, '3' AS mindex, z.M3 AS size_name, z.BS3 AS size_mark FROM d1006 z
    UNION ALL SELECT z.M_ID, '4' AS mindex, z.M4 AS size_name, z.BS4 AS size_mark FROM d1006 z
    UNION ALL SELECT z.M_ID, '5' AS mindex, z.M5 AS size_name, z.BS5 AS size_mark FROM d1006 z
    UNION ALL SELECT z.M_ID, '6' AS mindex, z.M6 AS size_name, z.BS6 AS size_mark FROM d1006 z
    UNION ALL SELECT z.M_ID, '7' AS mindex, z.M7 AS size_name, z.BS7 AS size_mark FROM d1006 z
    UNION ALL SELECT z.M_ID, '8' AS mindex, z.M8 AS size_name, z.BS8 AS size_mark FROM d1006 z
    UNION ALL SELECT z.M_ID, '9' AS mindex, z.M9 AS size_name, z.BS9 AS size_mark FROM d1006 z
) x ON x.M_ID = st.M_ID
LEFT JOIN d1005 c ON c.COL_ID = a.COL_ID
LEFT JOIN d1809 b ON b.WL_ID = a.WL_ID AND b.M_INDEX = x.mindex
WHERE ISNULL(x.size_name, '') <> '' AND (st.TMI <> 1 OR b.TM IS NOT NULL);

-- Transfer lines with each warehouse they touch (sending and receiving).
CREATE VIEW V_D8303A AS
SELECT DISTINCT a.NOID, a.WL_ID, a.K_ID, CASE w.side WHEN 0 THEN a.CK_ID ELSE a.CK_ID_IN END AS CK_ID, st.CHECK_KC
FROM D8303A a
CROSS JOIN (SELECT 0 AS side UNION ALL SELECT 1 AS side) w
LEFT JOIN d1800 st ON st.K_ID = a.K_ID;

-- Point-of-sale lines with their ticket's date, warehouse and member, and the SKU's style.
CREATE VIEW v_D712 AS
SELECT b.NOID, h.BDATE, h.CK_ID, h.VIPID, h.YW_ID, b.WL_ID, s.K_ID, s.COL_ID,
       b.S0, b.S1, b.S2, b.S3, b.S4, b.S5, b.S6, b.S7, b.S8, b.S9,
       b.SJ, b.SMONEY, b.ZK, b.ODJ, b.OMONEY, b.MONEY, b.NOTE
FROM d712a b
INNER JOIN d712 h ON h.NOID = b.NOID
LEFT JOIN d1801 s ON s.WL_ID = b.WL_ID;

-- Goods in transit: the lines of transfers that have left their warehouse (T = 1) and whose
-- arrival is not confirmed yet (Y <> 1), with the sent quantities per size and their total.
CREATE VIEW V_QX_ZT AS
SELECT h.NOID, h.BDATE, h.CK_ID, h.CK_ID_IN, a.WL_ID, a.K_ID, a.COL_ID,
       a.S0, a.S1, a.S2, a.S3, a.S4, a.S5, a.S6, a.S7, a.S8, a.S9,
       a.S0 + a.S1 + a.S2 + a.S3 + a.S4 + a.S5 + a.S6 + a.S7 + a.S8 + a.S9 AS STOT
FROM D8303 h
INNER JOIN D8303A a ON a.NOID = h.NOID
WHERE h.T = 1 AND ISNULL(h.Y, 0) <> 1;
