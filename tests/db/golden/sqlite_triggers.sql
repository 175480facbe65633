# The SQLite posting triggers, totals, shortage and closed-period guards as generated before
# document lines completed their SKU rows; each statement ends with a line of four dashes.
CREATE TRIGGER qx_d1802_total_upd AFTER UPDATE OF K0, K1, K2, K3, K4, K5, K6, K7, K8, K9 ON d1802 FOR EACH ROW WHEN NEW.KC IS NOT (ifnull(NEW.K0,0)+ifnull(NEW.K1,0)+ifnull(NEW.K2,0)+ifnull(NEW.K3,0)+ifnull(NEW.K4,0)+ifnull(NEW.K5,0)+ifnull(NEW.K6,0)+ifnull(NEW.K7,0)+ifnull(NEW.K8,0)+ifnull(NEW.K9,0))
BEGIN
UPDATE d1802 SET KC=(ifnull(K0,0)+ifnull(K1,0)+ifnull(K2,0)+ifnull(K3,0)+ifnull(K4,0)+ifnull(K5,0)+ifnull(K6,0)+ifnull(K7,0)+ifnull(K8,0)+ifnull(K9,0)) WHERE rowid=NEW.rowid;
END
----
CREATE TRIGGER qx_d1802_total_ins AFTER INSERT ON d1802 FOR EACH ROW WHEN NEW.KC IS NOT (ifnull(NEW.K0,0)+ifnull(NEW.K1,0)+ifnull(NEW.K2,0)+ifnull(NEW.K3,0)+ifnull(NEW.K4,0)+ifnull(NEW.K5,0)+ifnull(NEW.K6,0)+ifnull(NEW.K7,0)+ifnull(NEW.K8,0)+ifnull(NEW.K9,0))
BEGIN
UPDATE d1802 SET KC=(ifnull(K0,0)+ifnull(K1,0)+ifnull(K2,0)+ifnull(K3,0)+ifnull(K4,0)+ifnull(K5,0)+ifnull(K6,0)+ifnull(K7,0)+ifnull(K8,0)+ifnull(K9,0)) WHERE rowid=NEW.rowid;
END
----
CREATE TRIGGER qx_d1802_short_upd AFTER UPDATE OF K0, K1, K2, K3, K4, K5, K6, K7, K8, K9, CHECK_KC ON d1802 FOR EACH ROW WHEN NEW.CHECK_KC=1 AND ((NEW.K0<0 AND NEW.K0<ifnull(OLD.K0,0)) OR (NEW.K1<0 AND NEW.K1<ifnull(OLD.K1,0)) OR (NEW.K2<0 AND NEW.K2<ifnull(OLD.K2,0)) OR (NEW.K3<0 AND NEW.K3<ifnull(OLD.K3,0)) OR (NEW.K4<0 AND NEW.K4<ifnull(OLD.K4,0)) OR (NEW.K5<0 AND NEW.K5<ifnull(OLD.K5,0)) OR (NEW.K6<0 AND NEW.K6<ifnull(OLD.K6,0)) OR (NEW.K7<0 AND NEW.K7<ifnull(OLD.K7,0)) OR (NEW.K8<0 AND NEW.K8<ifnull(OLD.K8,0)) OR (NEW.K9<0 AND NEW.K9<ifnull(OLD.K9,0)))
BEGIN
SELECT qx_stock_short(NEW.WL_ID, NEW.CK_ID);
END
----
CREATE TRIGGER qx_d1802_short_ins AFTER INSERT ON d1802 FOR EACH ROW WHEN NEW.CHECK_KC=1 AND (NEW.K0<0 OR NEW.K1<0 OR NEW.K2<0 OR NEW.K3<0 OR NEW.K4<0 OR NEW.K5<0 OR NEW.K6<0 OR NEW.K7<0 OR NEW.K8<0 OR NEW.K9<0)
BEGIN
SELECT qx_stock_short(NEW.WL_ID, NEW.CK_ID);
END
----
CREATE TRIGGER qx_post_purchase_line_ins AFTER INSERT ON D8101A FOR EACH ROW
BEGIN
INSERT INTO d1802 (WL_ID, CK_ID, CHECK_KC, K0, K1, K2, K3, K4, K5, K6, K7, K8, K9) SELECT NEW.WL_ID, NEW.CK_ID, ifnull((SELECT st.CHECK_KC FROM d1800 st WHERE st.K_ID=NEW.K_ID),0), ifnull(NEW.S0,0), ifnull(NEW.S1,0), ifnull(NEW.S2,0), ifnull(NEW.S3,0), ifnull(NEW.S4,0), ifnull(NEW.S5,0), ifnull(NEW.S6,0), ifnull(NEW.S7,0), ifnull(NEW.S8,0), ifnull(NEW.S9,0) WHERE EXISTS (SELECT 1 FROM D8101 h WHERE h.NOID=NEW.NOID AND h.T=1) AND NEW.CK_ID IS NOT NULL ON CONFLICT (WL_ID, CK_ID) DO UPDATE SET K0=K0+excluded.K0, K1=K1+excluded.K1, K2=K2+excluded.K2, K3=K3+excluded.K3, K4=K4+excluded.K4, K5=K5+excluded.K5, K6=K6+excluded.K6, K7=K7+excluded.K7, K8=K8+excluded.K8, K9=K9+excluded.K9;
END
----
CREATE TRIGGER qx_post_purchase_line_del AFTER DELETE ON D8101A FOR EACH ROW
BEGIN
UPDATE d1802 SET K0=K0+-ifnull(OLD.S0,0), K1=K1+-ifnull(OLD.S1,0), K2=K2+-ifnull(OLD.S2,0), K3=K3+-ifnull(OLD.S3,0), K4=K4+-ifnull(OLD.S4,0), K5=K5+-ifnull(OLD.S5,0), K6=K6+-ifnull(OLD.S6,0), K7=K7+-ifnull(OLD.S7,0), K8=K8+-ifnull(OLD.S8,0), K9=K9+-ifnull(OLD.S9,0) WHERE WL_ID=OLD.WL_ID AND CK_ID=OLD.CK_ID AND EXISTS (SELECT 1 FROM D8101 h WHERE h.NOID=OLD.NOID AND h.T=1);
END
----
CREATE TRIGGER qx_post_purchase_line_upd AFTER UPDATE ON D8101A FOR EACH ROW WHEN OLD.NOID IS NOT NEW.NOID OR OLD.WL_ID IS NOT NEW.WL_ID OR OLD.K_ID IS NOT NEW.K_ID OR OLD.CK_ID IS NOT NEW.CK_ID OR OLD.S0 IS NOT NEW.S0 OR OLD.S1 IS NOT NEW.S1 OR OLD.S2 IS NOT NEW.S2 OR OLD.S3 IS NOT NEW.S3 OR OLD.S4 IS NOT NEW.S4 OR OLD.S5 IS NOT NEW.S5 OR OLD.S6 IS NOT NEW.S6 OR OLD.S7 IS NOT NEW.S7 OR OLD.S8 IS NOT NEW.S8 OR OLD.S9 IS NOT NEW.S9
BEGIN
UPDATE d1802 SET K0=K0+-ifnull(OLD.S0,0), K1=K1+-ifnull(OLD.S1,0), K2=K2+-ifnull(OLD.S2,0), K3=K3+-ifnull(OLD.S3,0), K4=K4+-ifnull(OLD.S4,0), K5=K5+-ifnull(OLD.S5,0), K6=K6+-ifnull(OLD.S6,0), K7=K7+-ifnull(OLD.S7,0), K8=K8+-ifnull(OLD.S8,0), K9=K9+-ifnull(OLD.S9,0) WHERE WL_ID=OLD.WL_ID AND CK_ID=OLD.CK_ID AND EXISTS (SELECT 1 FROM D8101 h WHERE h.NOID=OLD.NOID AND h.T=1);
INSERT INTO d1802 (WL_ID, CK_ID, CHECK_KC, K0, K1, K2, K3, K4, K5, K6, K7, K8, K9) SELECT NEW.WL_ID, NEW.CK_ID, ifnull((SELECT st.CHECK_KC FROM d1800 st WHERE st.K_ID=NEW.K_ID),0), ifnull(NEW.S0,0), ifnull(NEW.S1,0), ifnull(NEW.S2,0), ifnull(NEW.S3,0), ifnull(NEW.S4,0), ifnull(NEW.S5,0), ifnull(NEW.S6,0), ifnull(NEW.S7,0), ifnull(NEW.S8,0), ifnull(NEW.S9,0) WHERE EXISTS (SELECT 1 FROM D8101 h WHERE h.NOID=NEW.NOID AND h.T=1) AND NEW.CK_ID IS NOT NULL ON CONFLICT (WL_ID, CK_ID) DO UPDATE SET K0=K0+excluded.K0, K1=K1+excluded.K1, K2=K2+excluded.K2, K3=K3+excluded.K3, K4=K4+excluded.K4, K5=K5+excluded.K5, K6=K6+excluded.K6, K7=K7+excluded.K7, K8=K8+excluded.K8, K9=K9+excluded.K9;
END
----
CREATE TRIGGER qx_post_purchase_head_upd AFTER UPDATE ON D8101 FOR EACH ROW WHEN ifnull(OLD.T,0)=1 <> ifnull(NEW.T,0)=1 OR OLD.NOID IS NOT NEW.NOID
BEGIN
UPDATE d1802 SET K0=K0+m.Q0, K1=K1+m.Q1, K2=K2+m.Q2, K3=K3+m.Q3, K4=K4+m.Q4, K5=K5+m.Q5, K6=K6+m.Q6, K7=K7+m.Q7, K8=K8+m.Q8, K9=K9+m.Q9 FROM (SELECT l.WL_ID AS WL_ID, l.CK_ID AS CK_ID, -sum(ifnull(l.S0,0)) AS Q0, -sum(ifnull(l.S1,0)) AS Q1, -sum(ifnull(l.S2,0)) AS Q2, -sum(ifnull(l.S3,0)) AS Q3, -sum(ifnull(l.S4,0)) AS Q4, -sum(ifnull(l.S5,0)) AS Q5, -sum(ifnull(l.S6,0)) AS Q6, -sum(ifnull(l.S7,0)) AS Q7, -sum(ifnull(l.S8,0)) AS Q8, -sum(ifnull(l.S9,0)) AS Q9 FROM D8101A l WHERE ifnull(OLD.T,0)=1 AND l.NOID=OLD.NOID GROUP BY l.WL_ID, l.CK_ID) m WHERE d1802.WL_ID=m.WL_ID AND d1802.CK_ID=m.CK_ID;
INSERT INTO d1802 (WL_ID, CK_ID, CHECK_KC, K0, K1, K2, K3, K4, K5, K6, K7, K8, K9) SELECT l.WL_ID, l.CK_ID, max(ifnull((SELECT st.CHECK_KC FROM d1800 st WHERE st.K_ID=l.K_ID),0)), sum(ifnull(l.S0,0)), sum(ifnull(l.S1,0)), sum(ifnull(l.S2,0)), sum(ifnull(l.S3,0)), sum(ifnull(l.S4,0)), sum(ifnull(l.S5,0)), sum(ifnull(l.S6,0)), sum(ifnull(l.S7,0)), sum(ifnull(l.S8,0)), sum(ifnull(l.S9,0)) FROM D8101A l WHERE ifnull(NEW.T,0)=1 AND l.NOID=NEW.NOID AND l.CK_ID IS NOT NULL GROUP BY l.WL_ID, l.CK_ID ON CONFLICT (WL_ID, CK_ID) DO UPDATE SET K0=K0+excluded.K0, K1=K1+excluded.K1, K2=K2+excluded.K2, K3=K3+excluded.K3, K4=K4+excluded.K4, K5=K5+excluded.K5, K6=K6+excluded.K6, K7=K7+excluded.K7, K8=K8+excluded.K8, K9=K9+excluded.K9;
END
----
CREATE TRIGGER qx_post_purchase_head_ins AFTER INSERT ON D8101 FOR EACH ROW WHEN ifnull(NEW.T,0)=1
BEGIN
INSERT INTO d1802 (WL_ID, CK_ID, CHECK_KC, K0, K1, K2, K3, K4, K5, K6, K7, K8, K9) SELECT l.WL_ID, l.CK_ID, max(ifnull((SELECT st.CHECK_KC FROM d1800 st WHERE st.K_ID=l.K_ID),0)), sum(ifnull(l.S0,0)), sum(ifnull(l.S1,0)), sum(ifnull(l.S2,0)), sum(ifnull(l.S3,0)), sum(ifnull(l.S4,0)), sum(ifnull(l.S5,0)), sum(ifnull(l.S6,0)), sum(ifnull(l.S7,0)), sum(ifnull(l.S8,0)), sum(ifnull(l.S9,0)) FROM D8101A l WHERE 1 AND l.NOID=NEW.NOID AND l.CK_ID IS NOT NULL GROUP BY l.WL_ID, l.CK_ID ON CONFLICT (WL_ID, CK_ID) DO UPDATE SET K0=K0+excluded.K0, K1=K1+excluded.K1, K2=K2+excluded.K2, K3=K3+excluded.K3, K4=K4+excluded.K4, K5=K5+excluded.K5, K6=K6+excluded.K6, K7=K7+excluded.K7, K8=K8+excluded.K8, K9=K9+excluded.K9;
END
----
CREATE TRIGGER qx_post_purchase_return_line_ins AFTER INSERT ON D8102A FOR EACH ROW
BEGIN
INSERT INTO d1802 (WL_ID, CK_ID, CHECK_KC, K0, K1, K2, K3, K4, K5, K6, K7, K8, K9) SELECT NEW.WL_ID, NEW.CK_ID, ifnull((SELECT st.CHECK_KC FROM d1800 st WHERE st.K_ID=NEW.K_ID),0), -ifnull(NEW.S0,0), -ifnull(NEW.S1,0), -ifnull(NEW.S2,0), -ifnull(NEW.S3,0), -ifnull(NEW.S4,0), -ifnull(NEW.S5,0), -ifnull(NEW.S6,0), -ifnull(NEW.S7,0), -ifnull(NEW.S8,0), -ifnull(NEW.S9,0) WHERE EXISTS (SELECT 1 FROM D8102 h WHERE h.NOID=NEW.NOID AND h.T=1) AND NEW.CK_ID IS NOT NULL ON CONFLICT (WL_ID, CK_ID) DO UPDATE SET K0=K0+excluded.K0, K1=K1+excluded.K1, K2=K2+excluded.K2, K3=K3+excluded.K3, K4=K4+excluded.K4, K5=K5+excluded.K5, K6=K6+excluded.K6, K7=K7+excluded.K7, K8=K8+excluded.K8, K9=K9+excluded.K9;
END
----
CREATE TRIGGER qx_post_purchase_return_line_del AFTER DELETE ON D8102A FOR EACH ROW
BEGIN
UPDATE d1802 SET K0=K0+ifnull(OLD.S0,0), K1=K1+ifnull(OLD.S1,0), K2=K2+ifnull(OLD.S2,0), K3=K3+ifnull(OLD.S3,0), K4=K4+ifnull(OLD.S4,0), K5=K5+ifnull(OLD.S5,0), K6=K6+ifnull(OLD.S6,0), K7=K7+ifnull(OLD.S7,0), K8=K8+ifnull(OLD.S8,0), K9=K9+ifnull(OLD.S9,0) WHERE WL_ID=OLD.WL_ID AND CK_ID=OLD.CK_ID AND EXISTS (SELECT 1 FROM D8102 h WHERE h.NOID=OLD.NOID AND h.T=1);
END
----
CREATE TRIGGER qx_post_purchase_return_line_upd AFTER UPDATE ON D8102A FOR EACH ROW WHEN OLD.NOID IS NOT NEW.NOID OR OLD.WL_ID IS NOT NEW.WL_ID OR OLD.K_ID IS NOT NEW.K_ID OR OLD.CK_ID IS NOT NEW.CK_ID OR OLD.S0 IS NOT NEW.S0 OR OLD.S1 IS NOT NEW.S1 OR OLD.S2 IS NOT NEW.S2 OR OLD.S3 IS NOT NEW.S3 OR OLD.S4 IS NOT NEW.S4 OR OLD.S5 IS NOT NEW.S5 OR OLD.S6 IS NOT NEW.S6 OR OLD.S7 IS NOT NEW.S7 OR OLD.S8 IS NOT NEW.S8 OR OLD.S9 IS NOT NEW.S9
BEGIN
UPDATE d1802 SET K0=K0+ifnull(OLD.S0,0), K1=K1+ifnull(OLD.S1,0), K2=K2+ifnull(OLD.S2,0), K3=K3+ifnull(OLD.S3,0), K4=K4+ifnull(OLD.S4,0), K5=K5+ifnull(OLD.S5,0), K6=K6+ifnull(OLD.S6,0), K7=K7+ifnull(OLD.S7,0), K8=K8+ifnull(OLD.S8,0), K9=K9+ifnull(OLD.S9,0) WHERE WL_ID=OLD.WL_ID AND CK_ID=OLD.CK_ID AND EXISTS (SELECT 1 FROM D8102 h WHERE h.NOID=OLD.NOID AND h.T=1);
INSERT INTO d1802 (WL_ID, CK_ID, CHECK_KC, K0, K1, K2, K3, K4, K5, K6, K7, K8, K9) SELECT NEW.WL_ID, NEW.CK_ID, ifnull((SELECT st.CHECK_KC FROM d1800 st WHERE st.K_ID=NEW.K_ID),0), -ifnull(NEW.S0,0), -ifnull(NEW.S1,0), -ifnull(NEW.S2,0), -ifnull(NEW.S3,0), -ifnull(NEW.S4,0), -ifnull(NEW.S5,0), -ifnull(NEW.S6,0), -ifnull(NEW.S7,0), -ifnull(NEW.S8,0), -ifnull(NEW.S9,0) WHERE EXISTS (SELECT 1 FROM D8102 h WHERE h.NOID=NEW.NOID AND h.T=1) AND NEW.CK_ID IS NOT NULL ON CONFLICT (WL_ID, CK_ID) DO UPDATE SET K0=K0+excluded.K0, K1=K1+excluded.K1, K2=K2+excluded.K2, K3=K3+excluded.K3, K4=K4+excluded.K4, K5=K5+excluded.K5, K6=K6+excluded.K6, K7=K7+excluded.K7, K8=K8+excluded.K8, K9=K9+excluded.K9;
END
----
CREATE TRIGGER qx_post_purchase_return_head_upd AFTER UPDATE ON D8102 FOR EACH ROW WHEN ifnull(OLD.T,0)=1 <> ifnull(NEW.T,0)=1 OR OLD.NOID IS NOT NEW.NOID
BEGIN
UPDATE d1802 SET K0=K0+m.Q0, K1=K1+m.Q1, K2=K2+m.Q2, K3=K3+m.Q3, K4=K4+m.Q4, K5=K5+m.Q5, K6=K6+m.Q6, K7=K7+m.Q7, K8=K8+m.Q8, K9=K9+m.Q9 FROM (SELECT l.WL_ID AS WL_ID, l.CK_ID AS CK_ID, sum(ifnull(l.S0,0)) AS Q0, sum(ifnull(l.S1,0)) AS Q1, sum(ifnull(l.S2,0)) AS Q2, sum(ifnull(l.S3,0)) AS Q3, sum(ifnull(l.S4,0)) AS Q4, sum(ifnull(l.S5,0)) AS Q5, sum(ifnull(l.S6,0)) AS Q6, sum(ifnull(l.S7,0)) AS Q7, sum(ifnull(l.S8,0)) AS Q8, sum(ifnull(l.S9,0)) AS Q9 FROM D8102A l WHERE ifnull(OLD.T,0)=1 AND l.NOID=OLD.NOID GROUP BY l.WL_ID, l.CK_ID) m WHERE d1802.WL_ID=m.WL_ID AND d1802.CK_ID=m.CK_ID;
INSERT INTO d1802 (WL_ID, CK_ID, CHECK_KC, K0, K1, K2, K3, K4, K5, K6, K7, K8, K9) SELECT l.WL_ID, l.CK_ID, max(ifnull((SELECT st.CHECK_KC FROM d1800 st WHERE st.K_ID=l.K_ID),0)), -sum(ifnull(l.S0,0)), -sum(ifnull(l.S1,0)), -sum(ifnull(l.S2,0)), -sum(ifnull(l.S3,0)), -sum(ifnull(l.S4,0)), -sum(ifnull(l.S5,0)), -sum(ifnull(l.S6,0)), -sum(ifnull(l.S7,0)), -sum(ifnull(l.S8,0)), -sum(ifnull(l.S9,0)) FROM D8102A l WHERE ifnull(NEW.T,0)=1 AND l.NOID=NEW.NOID AND l.CK_ID IS NOT NULL GROUP BY l.WL_ID, l.CK_ID ON CONFLICT (WL_ID, CK_ID) DO UPDATE SET K0=K0+excluded.K0, K1=K1+excluded.K1, K2=K2+excluded.K2, K3=K3+excluded.K3, K4=K4+excluded.K4, K5=K5+excluded.K5, K6=K6+excluded.K6, K7=K7+excluded.K7, K8=K8+excluded.K8, K9=K9+excluded.K9;
END
----
CREATE TRIGGER qx_post_purchase_return_head_ins AFTER INSERT ON D8102 FOR EACH ROW WHEN ifnull(NEW.T,0)=1
BEGIN
INSERT INTO d1802 (WL_ID, CK_ID, CHECK_KC, K0, K1, K2, K3, K4, K5, K6, K7, K8, K9) SELECT l.WL_ID, l.CK_ID, max(ifnull((SELECT st.CHECK_KC FROM d1800 st WHERE st.K_ID=l.K_ID),0)), -sum(ifnull(l.S0,0)), -sum(ifnull(l.S1,0)), -sum(ifnull(l.S2,0)), -sum(ifnull(l.S3,0)), -sum(ifnull(l.S4,0)), -sum(ifnull(l.S5,0)), -sum(ifnull(l.S6,0)), -sum(ifnull(l.S7,0)), -sum(ifnull(l.S8,0)), -sum(ifnull(l.S9,0)) FROM D8102A l WHERE 1 AND l.NOID=NEW.NOID AND l.CK_ID IS NOT NULL GROUP BY l.WL_ID, l.CK_ID ON CONFLICT (WL_ID, CK_ID) DO UPDATE SET K0=K0+excluded.K0, K1=K1+excluded.K1, K2=K2+excluded.K2, K3=K3+excluded.K3, K4=K4+excluded.K4, K5=K5+excluded.K5, K6=K6+excluded.K6, K7=K7+excluded.K7, K8=K8+excluded.K8, K9=K9+excluded.K9;
END
----
CREATE TRIGGER qx_post_sale_line_ins AFTER INSERT ON D8201A FOR EACH ROW
BEGIN
INSERT INTO d1802 (WL_ID, CK_ID, CHECK_KC, K0, K1, K2, K3, K4, K5, K6, K7, K8, K9) SELECT NEW.WL_ID, NEW.CK_ID, ifnull((SELECT st.CHECK_KC FROM d1800 st WHERE st.K_ID=NEW.K_ID),0), -ifnull(NEW.S0,0), -ifnull(NEW.S1,0), -ifnull(NEW.S2,0), -ifnull(NEW.S3,0), -ifnull(NEW.S4,0), -ifnull(NEW.S5,0), -ifnull(NEW.S6,0), -ifnull(NEW.S7,0), -ifnull(NEW.S8,0), -ifnull(NEW.S9,0) WHERE EXISTS (SELECT 1 FROM D8201 h WHERE h.NOID=NEW.NOID AND h.T=1) AND NEW.CK_ID IS NOT NULL ON CONFLICT (WL_ID, CK_ID) DO UPDATE SET K0=K0+excluded.K0, K1=K1+excluded.K1, K2=K2+excluded.K2, K3=K3+excluded.K3, K4=K4+excluded.K4, K5=K5+excluded.K5, K6=K6+excluded.K6, K7=K7+excluded.K7, K8=K8+excluded.K8, K9=K9+excluded.K9;
END
----
CREATE TRIGGER qx_post_sale_line_del AFTER DELETE ON D8201A FOR EACH ROW
BEGIN
UPDATE d1802 SET K0=K0+ifnull(OLD.S0,0), K1=K1+ifnull(OLD.S1,0), K2=K2+ifnull(OLD.S2,0), K3=K3+ifnull(OLD.S3,0), K4=K4+ifnull(OLD.S4,0), K5=K5+ifnull(OLD.S5,0), K6=K6+ifnull(OLD.S6,0), K7=K7+ifnull(OLD.S7,0), K8=K8+ifnull(OLD.S8,0), K9=K9+ifnull(OLD.S9,0) WHERE WL_ID=OLD.WL_ID AND CK_ID=OLD.CK_ID AND EXISTS (SELECT 1 FROM D8201 h WHERE h.NOID=OLD.NOID AND h.T=1);
END
----
CREATE TRIGGER qx_post_sale_line_upd AFTER UPDATE ON D8201A FOR EACH ROW WHEN OLD.NOID IS NOT NEW.NOID OR OLD.WL_ID IS NOT NEW.WL_ID OR OLD.K_ID IS NOT NEW.K_ID OR OLD.CK_ID IS NOT NEW.CK_ID OR OLD.S0 IS NOT NEW.S0 OR OLD.S1 IS NOT NEW.S1 OR OLD.S2 IS NOT NEW.S2 OR OLD.S3 IS NOT NEW.S3 OR OLD.S4 IS NOT NEW.S4 OR OLD.S5 IS NOT NEW.S5 OR OLD.S6 IS NOT NEW.S6 OR OLD.S7 IS NOT NEW.S7 OR OLD.S8 IS NOT NEW.S8 OR OLD.S9 IS NOT NEW.S9
BEGIN
UPDATE d1802 SET K0=K0+ifnull(OLD.S0,0), K1=K1+ifnull(OLD.S1,0), K2=K2+ifnull(OLD.S2,0), K3=K3+ifnull(OLD.S3,0), K4=K4+ifnull(OLD.S4,0), K5=K5+ifnull(OLD.S5,0), K6=K6+ifnull(OLD.S6,0), K7=K7+ifnull(OLD.S7,0), K8=K8+ifnull(OLD.S8,0), K9=K9+ifnull(OLD.S9,0) WHERE WL_ID=OLD.WL_ID AND CK_ID=OLD.CK_ID AND EXISTS (SELECT 1 FROM D8201 h WHERE h.NOID=OLD.NOID AND h.T=1);
INSERT INTO d1802 (WL_ID, CK_ID, CHECK_KC, K0, K1, K2, K3, K4, K5, K6, K7, K8, K9) SELECT NEW.WL_ID, NEW.CK_ID, ifnull((SELECT st.CHECK_KC FROM d1800 st WHERE st.K_ID=NEW.K_ID),0), -ifnull(NEW.S0,0), -ifnull(NEW.S1,0), -ifnull(NEW.S2,0), -ifnull(NEW.S3,0), -ifnull(NEW.S4,0), -ifnull(NEW.S5,0), -ifnull(NEW.S6,0), -ifnull(NEW.S7,0), -ifnull(NEW.S8,0), -ifnull(NEW.S9,0) WHERE EXISTS (SELECT 1 FROM D8201 h WHERE h.NOID=NEW.NOID AND h.T=1) AND NEW.CK_ID IS NOT NULL ON CONFLICT (WL_ID, CK_ID) DO UPDATE SET K0=K0+excluded.K0, K1=K1+excluded.K1, K2=K2+excluded.K2, K3=K3+excluded.K3, K4=K4+excluded.K4, K5=K5+excluded.K5, K6=K6+excluded.K6, K7=K7+excluded.K7, K8=K8+excluded.K8, K9=K9+excluded.K9;
END
----
CREATE TRIGGER qx_post_sale_head_upd AFTER UPDATE ON D8201 FOR EACH ROW WHEN ifnull(OLD.T,0)=1 <> ifnull(NEW.T,0)=1 OR OLD.NOID IS NOT NEW.NOID
BEGIN
UPDATE d1802 SET K0=K0+m.Q0, K1=K1+m.Q1, K2=K2+m.Q2, K3=K3+m.Q3, K4=K4+m.Q4, K5=K5+m.Q5, K6=K6+m.Q6, K7=K7+m.Q7, K8=K8+m.Q8, K9=K9+m.Q9 FROM (SELECT l.WL_ID AS WL_ID, l.CK_ID AS CK_ID, sum(ifnull(l.S0,0)) AS Q0, sum(ifnull(l.S1,0)) AS Q1, sum(ifnull(l.S2,0)) AS Q2, sum(ifnull(l.S3,0)) AS Q3, sum(ifnull(l.S4,0)) AS Q4, sum(ifnull(l.S5,0)) AS Q5, sum(ifnull(l.S6,0)) AS Q6, sum(ifnull(l.S7,0)) AS Q7, sum(ifnull(l.S8,0)) AS Q8, sum(ifnull(l.S9,0)) AS Q9 FROM D8201A l WHERE ifnull(OLD.T,0)=1 AND l.NOID=OLD.NOID GROUP BY l.WL_ID, l.CK_ID) m WHERE d1802.WL_ID=m.WL_ID AND d1802.CK_ID=m.CK_ID;
INSERT INTO d1802 (WL_ID, CK_ID, CHECK_KC, K0, K1, K2, K3, K4, K5, K6, K7, K8, K9) SELECT l.WL_ID, l.CK_ID, max(ifnull((SELECT st.CHECK_KC FROM d1800 st WHERE st.K_ID=l.K_ID),0)), -sum(ifnull(l.S0,0)), -sum(ifnull(l.S1,0)), -sum(ifnull(l.S2,0)), -sum(ifnull(l.S3,0)), -sum(ifnull(l.S4,0)), -sum(ifnull(l.S5,0)), -sum(ifnull(l.S6,0)), -sum(ifnull(l.S7,0)), -sum(ifnull(l.S8,0)), -sum(ifnull(l.S9,0)) FROM D8201A l WHERE ifnull(NEW.T,0)=1 AND l.NOID=NEW.NOID AND l.CK_ID IS NOT NULL GROUP BY l.WL_ID, l.CK_ID ON CONFLICT (WL_ID, CK_ID) DO UPDATE SET K0=K0+excluded.K0, K1=K1+excluded.K1, K2=K2+excluded.K2, K3=K3+excluded.K3, K4=K4+excluded.K4, K5=K5+excluded.K5, K6=K6+excluded.K6, K7=K7+excluded.K7, K8=K8+excluded.K8, K9=K9+excluded.K9;
END
----
CREATE TRIGGER qx_post_sale_head_ins AFTER INSERT ON D8201 FOR EACH ROW WHEN ifnull(NEW.T,0)=1
BEGIN
INSERT INTO d1802 (WL_ID, CK_ID, CHECK_KC, K0, K1, K2, K3, K4, K5, K6, K7, K8, K9) SELECT l.WL_ID, l.CK_ID, max(ifnull((SELECT st.CHECK_KC FROM d1800 st WHERE st.K_ID=l.K_ID),0)), -sum(ifnull(l.S0,0)), -sum(ifnull(l.S1,0)), -sum(ifnull(l.S2,0)), -sum(ifnull(l.S3,0)), -sum(ifnull(l.S4,0)), -sum(ifnull(l.S5,0)), -sum(ifnull(l.S6,0)), -sum(ifnull(l.S7,0)), -sum(ifnull(l.S8,0)), -sum(ifnull(l.S9,0)) FROM D8201A l WHERE 1 AND l.NOID=NEW.NOID AND l.CK_ID IS NOT NULL GROUP BY l.WL_ID, l.CK_ID ON CONFLICT (WL_ID, CK_ID) DO UPDATE SET K0=K0+excluded.K0, K1=K1+excluded.K1, K2=K2+excluded.K2, K3=K3+excluded.K3, K4=K4+excluded.K4, K5=K5+excluded.K5, K6=K6+excluded.K6, K7=K7+excluded.K7, K8=K8+excluded.K8, K9=K9+excluded.K9;
END
----
CREATE TRIGGER qx_post_sale_return_line_ins AFTER INSERT ON D8202A FOR EACH ROW
BEGIN
INSERT INTO d1802 (WL_ID, CK_ID, CHECK_KC, K0, K1, K2, K3, K4, K5, K6, K7, K8, K9) SELECT NEW.WL_ID, NEW.CK_ID, ifnull((SELECT st.CHECK_KC FROM d1800 st WHERE st.K_ID=NEW.K_ID),0), ifnull(NEW.S0,0), ifnull(NEW.S1,0), ifnull(NEW.S2,0), ifnull(NEW.S3,0), ifnull(NEW.S4,0), ifnull(NEW.S5,0), ifnull(NEW.S6,0), ifnull(NEW.S7,0), ifnull(NEW.S8,0), ifnull(NEW.S9,0) WHERE EXISTS (SELECT 1 FROM D8202 h WHERE h.NOID=NEW.NOID AND h.T=1) AND NEW.CK_ID IS NOT NULL ON CONFLICT (WL_ID, CK_ID) DO UPDATE SET K0=K0+excluded.K0, K1=K1+excluded.K1, K2=K2+excluded.K2, K3=K3+excluded.K3, K4=K4+excluded.K4, K5=K5+excluded.K5, K6=K6+excluded.K6, K7=K7+excluded.K7, K8=K8+excluded.K8, K9=K9+excluded.K9;
END
----
CREATE TRIGGER qx_post_sale_return_line_del AFTER DELETE ON D8202A FOR EACH ROW
BEGIN
UPDATE d1802 SET K0=K0+-ifnull(OLD.S0,0), K1=K1+-ifnull(OLD.S1,0), K2=K2+-ifnull(OLD.S2,0), K3=K3+-ifnull(OLD.S3,0), K4=K4+-ifnull(OLD.S4,0), K5=K5+-ifnull(OLD.S5,0), K6=K6+-ifnull(OLD.S6,0), K7=K7+-ifnull(OLD.S7,0), K8=K8+-ifnull(OLD.S8,0), K9=K9+-ifnull(OLD.S9,0) WHERE WL_ID=OLD.WL_ID AND CK_ID=OLD.CK_ID AND EXISTS (SELECT 1 FROM D8202 h WHERE h.NOID=OLD.NOID AND h.T=1);
END
----
CREATE TRIGGER qx_post_sale_return_line_upd AFTER UPDATE ON D8202A FOR EACH ROW WHEN OLD.NOID IS NOT NEW.NOID OR OLD.WL_ID IS NOT NEW.WL_ID OR OLD.K_ID IS NOT NEW.K_ID OR OLD.CK_ID IS NOT NEW.CK_ID OR OLD.S0 IS NOT NEW.S0 OR OLD.S1 IS NOT NEW.S1 OR OLD.S2 IS NOT NEW.S2 OR OLD.S3 IS NOT NEW.S3 OR OLD.S4 IS NOT NEW.S4 OR OLD.S5 IS NOT NEW.S5 OR OLD.S6 IS NOT NEW.S6 OR OLD.S7 IS NOT NEW.S7 OR OLD.S8 IS NOT NEW.S8 OR OLD.S9 IS NOT NEW.S9
BEGIN
UPDATE d1802 SET K0=K0+-ifnull(OLD.S0,0), K1=K1+-ifnull(OLD.S1,0), K2=K2+-ifnull(OLD.S2,0), K3=K3+-ifnull(OLD.S3,0), K4=K4+-ifnull(OLD.S4,0), K5=K5+-ifnull(OLD.S5,0), K6=K6+-ifnull(OLD.S6,0), K7=K7+-ifnull(OLD.S7,0), K8=K8+-ifnull(OLD.S8,0), K9=K9+-ifnull(OLD.S9,0) WHERE WL_ID=OLD.WL_ID AND CK_ID=OLD.CK_ID AND EXISTS (SELECT 1 FROM D8202 h WHERE h.NOID=OLD.NOID AND h.T=1);
INSERT INTO d1802 (WL_ID, CK_ID, CHECK_KC, K0, K1, K2, K3, K4, K5, K6, K7, K8, K9) SELECT NEW.WL_ID, NEW.CK_ID, ifnull((SELECT st.CHECK_KC FROM d1800 st WHERE st.K_ID=NEW.K_ID),0), ifnull(NEW.S0,0), ifnull(NEW.S1,0), ifnull(NEW.S2,0), ifnull(NEW.S3,0), ifnull(NEW.S4,0), ifnull(NEW.S5,0), ifnull(NEW.S6,0), ifnull(NEW.S7,0), ifnull(NEW.S8,0), ifnull(NEW.S9,0) WHERE EXISTS (SELECT 1 FROM D8202 h WHERE h.NOID=NEW.NOID AND h.T=1) AND NEW.CK_ID IS NOT NULL ON CONFLICT (WL_ID, CK_ID) DO UPDATE SET K0=K0+excluded.K0, K1=K1+excluded.K1, K2=K2+excluded.K2, K3=K3+excluded.K3, K4=K4+excluded.K4, K5=K5+excluded.K5, K6=K6+excluded.K6, K7=K7+excluded.K7, K8=K8+excluded.K8, K9=K9+excluded.K9;
END
----
CREATE TRIGGER qx_post_sale_return_head_upd AFTER UPDATE ON D8202 FOR EACH ROW WHEN ifnull(OLD.T,0)=1 <> ifnull(NEW.T,0)=1 OR OLD.NOID IS NOT NEW.NOID
BEGIN
UPDATE d1802 SET K0=K0+m.Q0, K1=K1+m.Q1, K2=K2+m.Q2, K3=K3+m.Q3, K4=K4+m.Q4, K5=K5+m.Q5, K6=K6+m.Q6, K7=K7+m.Q7, K8=K8+m.Q8, K9=K9+m.Q9 FROM (SELECT l.WL_ID AS WL_ID, l.CK_ID AS CK_ID, -sum(ifnull(l.S0,0)) AS Q0, -sum(ifnull(l.S1,0)) AS Q1, -sum(ifnull(l.S2,0)) AS Q2, -sum(ifnull(l.S3,0)) AS Q3, -sum(ifnull(l.S4,0)) AS Q4, -sum(ifnull(l.S5,0)) AS Q5, -sum(ifnull(l.S6,0)) AS Q6, -sum(ifnull(l.S7,0)) AS Q7, -sum(ifnull(l.S8,0)) AS Q8, -sum(ifnull(l.S9,0)) AS Q9 FROM D8202A l WHERE ifnull(OLD.T,0)=1 AND l.NOID=OLD.NOID GROUP BY l.WL_ID, l.CK_ID) m WHERE d1802.WL_ID=m.WL_ID AND d1802.CK_ID=m.CK_ID;
INSERT INTO d1802 (WL_ID, CK_ID, CHECK_KC, K0, K1, K2, K3, K4, K5, K6, K7, K8, K9) SELECT l.WL_ID, l.CK_ID, max(ifnull((SELECT st.CHECK_KC FROM d1800 st WHERE st.K_ID=l.K_ID),0)), sum(ifnull(l.S0,0)), sum(ifnull(l.S1,0)), sum(ifnull(l.S2,0)), sum(ifnull(l.S3,0)), sum(ifnull(l.S4,0)), sum(ifnull(l.S5,0)), sum(ifnull(l.S6,0)), sum(ifnull(l.S7,0)), sum(ifnull(l.S8,0)), sum(ifnull(l.S9,0)) FROM D8202A l WHERE ifnull(NEW.T,0)=1 AND l.NOID=NEW.NOID AND l.CK_ID IS NOT NULL GROUP BY l.WL_ID, l.CK_ID ON CONFLICT (WL_ID, CK_ID) DO UPDATE SET K0=K0+excluded.K0, K1=K1+excluded.K1, K2=K2+excluded.K2, K3=K3+excluded.K3, K4=K4+excluded.K4, K5=K5+excluded.K5, K6=K6+excluded.K6, K7=K7+excluded.K7, K8=K8+excluded.K8, K9=K9+excluded.K9;
END
----
CREATE TRIGGER qx_post_sale_return_head_ins AFTER INSERT ON D8202 FOR EACH ROW WHEN ifnull(NEW.T,0)=1
BEGIN
INSERT INTO d1802 (WL_ID, CK_ID, CHECK_KC, K0, K1, K2, K3, K4, K5, K6, K7, K8, K9) SELECT l.WL_ID, l.CK_ID, max(ifnull((SELECT st.CHECK_KC FROM d1800 st WHERE st.K_ID=l.K_ID),0)), sum(ifnull(l.S0,0)), sum(ifnull(l.S1,0)), sum(ifnull(l.S2,0)), sum(ifnull(l.S3,0)), sum(ifnull(l.S4,0)), sum(ifnull(l.S5,0)), sum(ifnull(l.S6,0)), sum(ifnull(l.S7,0)), sum(ifnull(l.S8,0)), sum(ifnull(l.S9,0)) FROM D8202A l WHERE 1 AND l.NOID=NEW.NOID AND l.CK_ID IS NOT NULL GROUP BY l.WL_ID, l.CK_ID ON CONFLICT (WL_ID, CK_ID) DO UPDATE SET K0=K0+excluded.K0, K1=K1+excluded.K1, K2=K2+excluded.K2, K3=K3+excluded.K3, K4=K4+excluded.K4, K5=K5+excluded.K5, K6=K6+excluded.K6, K7=K7+excluded.K7, K8=K8+excluded.K8, K9=K9+excluded.K9;
END
----
CREATE TRIGGER qx_post_lossgain_line_ins AFTER INSERT ON d8301A FOR EACH ROW
BEGIN
INSERT INTO d1802 (WL_ID, CK_ID, CHECK_KC, K0, K1, K2, K3, K4, K5, K6, K7, K8, K9) SELECT NEW.WL_ID, NEW.CK_ID, ifnull((SELECT st.CHECK_KC FROM d1800 st WHERE st.K_ID=NEW.K_ID),0), ifnull(NEW.S0,0), ifnull(NEW.S1,0), ifnull(NEW.S2,0), ifnull(NEW.S3,0), ifnull(NEW.S4,0), ifnull(NEW.S5,0), ifnull(NEW.S6,0), ifnull(NEW.S7,0), ifnull(NEW.S8,0), ifnull(NEW.S9,0) WHERE EXISTS (SELECT 1 FROM d8301 h WHERE h.NOID=NEW.NOID AND h.T=1) AND NEW.CK_ID IS NOT NULL ON CONFLICT (WL_ID, CK_ID) DO UPDATE SET K0=K0+excluded.K0, K1=K1+excluded.K1, K2=K2+excluded.K2, K3=K3+excluded.K3, K4=K4+excluded.K4, K5=K5+excluded.K5, K6=K6+excluded.K6, K7=K7+excluded.K7, K8=K8+excluded.K8, K9=K9+excluded.K9;
END
----
CREATE TRIGGER qx_post_lossgain_line_del AFTER DELETE ON d8301A FOR EACH ROW
BEGIN
UPDATE d1802 SET K0=K0+-ifnull(OLD.S0,0), K1=K1+-ifnull(OLD.S1,0), K2=K2+-ifnull(OLD.S2,0), K3=K3+-ifnull(OLD.S3,0), K4=K4+-ifnull(OLD.S4,0), K5=K5+-ifnull(OLD.S5,0), K6=K6+-ifnull(OLD.S6,0), K7=K7+-ifnull(OLD.S7,0), K8=K8+-ifnull(OLD.S8,0), K9=K9+-ifnull(OLD.S9,0) WHERE WL_ID=OLD.WL_ID AND CK_ID=OLD.CK_ID AND EXISTS (SELECT 1 FROM d8301 h WHERE h.NOID=OLD.NOID AND h.T=1);
END
----
CREATE TRIGGER qx_post_lossgain_line_upd AFTER UPDATE ON d8301A FOR EACH ROW WHEN OLD.NOID IS NOT NEW.NOID OR OLD.WL_ID IS NOT NEW.WL_ID OR OLD.K_ID IS NOT NEW.K_ID OR OLD.CK_ID IS NOT NEW.CK_ID OR OLD.S0 IS NOT NEW.S0 OR OLD.S1 IS NOT NEW.S1 OR OLD.S2 IS NOT NEW.S2 OR OLD.S3 IS NOT NEW.S3 OR OLD.S4 IS NOT NEW.S4 OR OLD.S5 IS NOT NEW.S5 OR OLD.S6 IS NOT NEW.S6 OR OLD.S7 IS NOT NEW.S7 OR OLD.S8 IS NOT NEW.S8 OR OLD.S9 IS NOT NEW.S9
BEGIN
UPDATE d1802 SET K0=K0+-ifnull(OLD.S0,0), K1=K1+-ifnull(OLD.S1,0), K2=K2+-ifnull(OLD.S2,0), K3=K3+-ifnull(OLD.S3,0), K4=K4+-ifnull(OLD.S4,0), K5=K5+-ifnull(OLD.S5,0), K6=K6+-ifnull(OLD.S6,0), K7=K7+-ifnull(OLD.S7,0), K8=K8+-ifnull(OLD.S8,0), K9=K9+-ifnull(OLD.S9,0) WHERE WL_ID=OLD.WL_ID AND CK_ID=OLD.CK_ID AND EXISTS (SELECT 1 FROM d8301 h WHERE h.NOID=OLD.NOID AND h.T=1);
INSERT INTO d1802 (WL_ID, CK_ID, CHECK_KC, K0, K1, K2, K3, K4, K5, K6, K7, K8, K9) SELECT NEW.WL_ID, NEW.CK_ID, ifnull((SELECT st.CHECK_KC FROM d1800 st WHERE st.K_ID=NEW.K_ID),0), ifnull(NEW.S0,0), ifnull(NEW.S1,0), ifnull(NEW.S2,0), ifnull(NEW.S3,0), ifnull(NEW.S4,0), ifnull(NEW.S5,0), ifnull(NEW.S6,0), ifnull(NEW.S7,0), ifnull(NEW.S8,0), ifnull(NEW.S9,0) WHERE EXISTS (SELECT 1 FROM d8301 h WHERE h.NOID=NEW.NOID AND h.T=1) AND NEW.CK_ID IS NOT NULL ON CONFLICT (WL_ID, CK_ID) DO UPDATE SET K0=K0+excluded.K0, K1=K1+excluded.K1, K2=K2+excluded.K2, K3=K3+excluded.K3, K4=K4+excluded.K4, K5=K5+excluded.K5, K6=K6+excluded.K6, K7=K7+excluded.K7, K8=K8+excluded.K8, K9=K9+excluded.K9;
END
----
CREATE TRIGGER qx_post_lossgain_head_upd AFTER UPDATE ON d8301 FOR EACH ROW WHEN ifnull(OLD.T,0)=1 <> ifnull(NEW.T,0)=1 OR OLD.NOID IS NOT NEW.NOID
BEGIN
UPDATE d1802 SET K0=K0+m.Q0, K1=K1+m.Q1, K2=K2+m.Q2, K3=K3+m.Q3, K4=K4+m.Q4, K5=K5+m.Q5, K6=K6+m.Q6, K7=K7+m.Q7, K8=K8+m.Q8, K9=K9+m.Q9 FROM (SELECT l.WL_ID AS WL_ID, l.CK_ID AS CK_ID, -sum(ifnull(l.S0,0)) AS Q0, -sum(ifnull(l.S1,0)) AS Q1, -sum(ifnull(l.S2,0)) AS Q2, -sum(ifnull(l.S3,0)) AS Q3, -sum(ifnull(l.S4,0)) AS Q4, -sum(ifnull(l.S5,0)) AS Q5, -sum(ifnull(l.S6,0)) AS Q6, -sum(ifnull(l.S7,0)) AS Q7, -sum(ifnull(l.S8,0)) AS Q8, -sum(ifnull(l.S9,0)) AS Q9 FROM d8301A l WHERE ifnull(OLD.T,0)=1 AND l.NOID=OLD.NOID GROUP BY l.WL_ID, l.CK_ID) m WHERE d1802.WL_ID=m.WL_ID AND d1802.CK_ID=m.CK_ID;
INSERT INTO d1802 (WL_ID, CK_ID, CHECK_KC, K0, K1, K2, K3, K4, K5, K6, K7, K8, K9) SELECT l.WL_ID, l.CK_ID, max(ifnull((SELECT st.CHECK_KC FROM d1800 st WHERE st.K_ID=l.K_ID),0)), sum(ifnull(l.S0,0)), sum(ifnull(l.S1,0)), sum(ifnull(l.S2,0)), sum(ifnull(l.S3,0)), sum(ifnull(l.S4,0)), sum(ifnull(l.S5,0)), sum(ifnull(l.S6,0)), sum(ifnull(l.S7,0)), sum(ifnull(l.S8,0)), sum(ifnull(l.S9,0)) FROM d8301A l WHERE ifnull(NEW.T,0)=1 AND l.NOID=NEW.NOID AND l.CK_ID IS NOT NULL GROUP BY l.WL_ID, l.CK_ID ON CONFLICT (WL_ID, CK_ID) DO UPDATE SET K0=K0+excluded.K0, K1=K1+excluded.K1, K2=K2+excluded.K2, K3=K3+excluded.K3, K4=K4+excluded.K4, K5=K5+excluded.K5, K6=K6+excluded.K6, K7=K7+excluded.K7, K8=K8+excluded.K8, K9=K9+excluded.K9;
END
----
CREATE TRIGGER qx_post_lossgain_head_ins AFTER INSERT ON d8301 FOR EACH ROW WHEN ifnull(NEW.T,0)=1
BEGIN
INSERT INTO d1802 (WL_ID, CK_ID, CHECK_KC, K0, K1, K2, K3, K4, K5, K6, K7, K8, K9) SELECT l.WL_ID, l.CK_ID, max(ifnull((SELECT st.CHECK_KC FROM d1800 st WHERE st.K_ID=l.K_ID),0)), sum(ifnull(l.S0,0)), sum(ifnull(l.S1,0)), sum(ifnull(l.S2,0)), sum(ifnull(l.S3,0)), sum(ifnull(l.S4,0)), sum(ifnull(l.S5,0)), sum(ifnull(l.S6,0)), sum(ifnull(l.S7,0)), sum(ifnull(l.S8,0)), sum(ifnull(l.S9,0)) FROM d8301A l WHERE 1 AND l.NOID=NEW.NOID AND l.CK_ID IS NOT NULL GROUP BY l.WL_ID, l.CK_ID ON CONFLICT (WL_ID, CK_ID) DO UPDATE SET K0=K0+excluded.K0, K1=K1+excluded.K1, K2=K2+excluded.K2, K3=K3+excluded.K3, K4=K4+excluded.K4, K5=K5+excluded.K5, K6=K6+excluded.K6, K7=K7+excluded.K7, K8=K8+excluded.K8, K9=K9+excluded.K9;
END
----
CREATE TRIGGER qx_post_transfer_out_line_ins AFTER INSERT ON D8303A FOR EACH ROW
BEGIN
INSERT INTO d1802 (WL_ID, CK_ID, CHECK_KC, K0, K1, K2, K3, K4, K5, K6, K7, K8, K9) SELECT NEW.WL_ID, NEW.CK_ID, ifnull((SELECT st.CHECK_KC FROM d1800 st WHERE st.K_ID=NEW.K_ID),0), -ifnull(NEW.S0,0), -ifnull(NEW.S1,0), -ifnull(NEW.S2,0), -ifnull(NEW.S3,0), -ifnull(NEW.S4,0), -ifnull(NEW.S5,0), -ifnull(NEW.S6,0), -ifnull(NEW.S7,0), -ifnull(NEW.S8,0), -ifnull(NEW.S9,0) WHERE EXISTS (SELECT 1 FROM D8303 h WHERE h.NOID=NEW.NOID AND h.T=1) AND NEW.CK_ID IS NOT NULL ON CONFLICT (WL_ID, CK_ID) DO UPDATE SET K0=K0+excluded.K0, K1=K1+excluded.K1, K2=K2+excluded.K2, K3=K3+excluded.K3, K4=K4+excluded.K4, K5=K5+excluded.K5, K6=K6+excluded.K6, K7=K7+excluded.K7, K8=K8+excluded.K8, K9=K9+excluded.K9;
END
----
CREATE TRIGGER qx_post_transfer_out_line_del AFTER DELETE ON D8303A FOR EACH ROW
BEGIN
UPDATE d1802 SET K0=K0+ifnull(OLD.S0,0), K1=K1+ifnull(OLD.S1,0), K2=K2+ifnull(OLD.S2,0), K3=K3+ifnull(OLD.S3,0), K4=K4+ifnull(OLD.S4,0), K5=K5+ifnull(OLD.S5,0), K6=K6+ifnull(OLD.S6,0), K7=K7+ifnull(OLD.S7,0), K8=K8+ifnull(OLD.S8,0), K9=K9+ifnull(OLD.S9,0) WHERE WL_ID=OLD.WL_ID AND CK_ID=OLD.CK_ID AND EXISTS (SELECT 1 FROM D8303 h WHERE h.NOID=OLD.NOID AND h.T=1);
END
----
CREATE TRIGGER qx_post_transfer_out_line_upd AFTER UPDATE ON D8303A FOR EACH ROW WHEN OLD.NOID IS NOT NEW.NOID OR OLD.WL_ID IS NOT NEW.WL_ID OR OLD.K_ID IS NOT NEW.K_ID OR OLD.CK_ID IS NOT NEW.CK_ID OR OLD.S0 IS NOT NEW.S0 OR OLD.S1 IS NOT NEW.S1 OR OLD.S2 IS NOT NEW.S2 OR OLD.S3 IS NOT NEW.S3 OR OLD.S4 IS NOT NEW.S4 OR OLD.S5 IS NOT NEW.S5 OR OLD.S6 IS NOT NEW.S6 OR OLD.S7 IS NOT NEW.S7 OR OLD.S8 IS NOT NEW.S8 OR OLD.S9 IS NOT NEW.S9
BEGIN
UPDATE d1802 SET K0=K0+ifnull(OLD.S0,0), K1=K1+ifnull(OLD.S1,0), K2=K2+ifnull(OLD.S2,0), K3=K3+ifnull(OLD.S3,0), K4=K4+ifnull(OLD.S4,0), K5=K5+ifnull(OLD.S5,0), K6=K6+ifnull(OLD.S6,0), K7=K7+ifnull(OLD.S7,0), K8=K8+ifnull(OLD.S8,0), K9=K9+ifnull(OLD.S9,0) WHERE WL_ID=OLD.WL_ID AND CK_ID=OLD.CK_ID AND EXISTS (SELECT 1 FROM D8303 h WHERE h.NOID=OLD.NOID AND h.T=1);
INSERT INTO d1802 (WL_ID, CK_ID, CHECK_KC, K0, K1, K2, K3, K4, K5, K6, K7, K8, K9) SELECT NEW.WL_ID, NEW.CK_ID, ifnull((SELECT st.CHECK_KC FROM d1800 st WHERE st.K_ID=NEW.K_ID),0), -ifnull(NEW.S0,0), -ifnull(NEW.S1,0), -ifnull(NEW.S2,0), -ifnull(NEW.S3,0), -ifnull(NEW.S4,0), -ifnull(NEW.S5,0), -ifnull(NEW.S6,0), -ifnull(NEW.S7,0), -ifnull(NEW.S8,0), -ifnull(NEW.S9,0) WHERE EXISTS (SELECT 1 FROM D8303 h WHERE h.NOID=NEW.NOID AND h.T=1) AND NEW.CK_ID IS NOT NULL ON CONFLICT (WL_ID, CK_ID) DO UPDATE SET K0=K0+excluded.K0, K1=K1+excluded.K1, K2=K2+excluded.K2, K3=K3+excluded.K3, K4=K4+excluded.K4, K5=K5+excluded.K5, K6=K6+excluded.K6, K7=K7+excluded.K7, K8=K8+excluded.K8, K9=K9+excluded.K9;
END
----
CREATE TRIGGER qx_post_transfer_out_head_upd AFTER UPDATE ON D8303 FOR EACH ROW WHEN ifnull(OLD.T,0)=1 <> ifnull(NEW.T,0)=1 OR OLD.NOID IS NOT NEW.NOID
BEGIN
UPDATE d1802 SET K0=K0+m.Q0, K1=K1+m.Q1, K2=K2+m.Q2, K3=K3+m.Q3, K4=K4+m.Q4, K5=K5+m.Q5, K6=K6+m.Q6, K7=K7+m.Q7, K8=K8+m.Q8, K9=K9+m.Q9 FROM (SELECT l.WL_ID AS WL_ID, l.CK_ID AS CK_ID, sum(ifnull(l.S0,0)) AS Q0, sum(ifnull(l.S1,0)) AS Q1, sum(ifnull(l.S2,0)) AS Q2, sum(ifnull(l.S3,0)) AS Q3, sum(ifnull(l.S4,0)) AS Q4, sum(ifnull(l.S5,0)) AS Q5, sum(ifnull(l.S6,0)) AS Q6, sum(ifnull(l.S7,0)) AS Q7, sum(ifnull(l.S8,0)) AS Q8, sum(ifnull(l.S9,0)) AS Q9 FROM D8303A l WHERE ifnull(OLD.T,0)=1 AND l.NOID=OLD.NOID GROUP BY l.WL_ID, l.CK_ID) m WHERE d1802.WL_ID=m.WL_ID AND d1802.CK_ID=m.CK_ID;
INSERT INTO d1802 (WL_ID, CK_ID, CHECK_KC, K0, K1, K2, K3, K4, K5, K6, K7, K8, K9) SELECT l.WL_ID, l.CK_ID, max(ifnull((SELECT st.CHECK_KC FROM d1800 st WHERE st.K_ID=l.K_ID),0)), -sum(ifnull(l.S0,0)), -sum(ifnull(l.S1,0)), -sum(ifnull(l.S2,0)), -sum(ifnull(l.S3,0)), -sum(ifnull(l.S4,0)), -sum(ifnull(l.S5,0)), -sum(ifnull(l.S6,0)), -sum(ifnull(l.S7,0)), -sum(ifnull(l.S8,0)), -sum(ifnull(l.S9,0)) FROM D8303A l WHERE ifnull(NEW.T,0)=1 AND l.NOID=NEW.NOID AND l.CK_ID IS NOT NULL GROUP BY l.WL_ID, l.CK_ID ON CONFLICT (WL_ID, CK_ID) DO UPDATE SET K0=K0+excluded.K0, K1=K1+excluded.K1, K2=K2+excluded.K2, K3=K3+excluded.K3, K4=K4+excluded.K4, K5=K5+excluded.K5, K6=K6+excluded.K6, K7=K7+excluded.K7, K8=K8+excluded.K8, K9=K9+excluded.K9;
END
----
CREATE TRIGGER qx_post_transfer_out_head_ins AFTER INSERT ON D8303 FOR EACH ROW WHEN ifnull(NEW.T,0)=1
BEGIN
INSERT INTO d1802 (WL_ID, CK_ID, CHECK_KC, K0, K1, K2, K3, K4, K5, K6, K7, K8, K9) SELECT l.WL_ID, l.CK_ID, max(ifnull((SELECT st.CHECK_KC FROM d1800 st WHERE st.K_ID=l.K_ID),0)), -sum(ifnull(l.S0,0)), -sum(ifnull(l.S1,0)), -sum(ifnull(l.S2,0)), -sum(ifnull(l.S3,0)), -sum(ifnull(l.S4,0)), -sum(ifnull(l.S5,0)), -sum(ifnull(l.S6,0)), -sum(ifnull(l.S7,0)), -sum(ifnull(l.S8,0)), -sum(ifnull(l.S9,0)) FROM D8303A l WHERE 1 AND l.NOID=NEW.NOID AND l.CK_ID IS NOT NULL GROUP BY l.WL_ID, l.CK_ID ON CONFLICT (WL_ID, CK_ID) DO UPDATE SET K0=K0+excluded.K0, K1=K1+excluded.K1, K2=K2+excluded.K2, K3=K3+excluded.K3, K4=K4+excluded.K4, K5=K5+excluded.K5, K6=K6+excluded.K6, K7=K7+excluded.K7, K8=K8+excluded.K8, K9=K9+excluded.K9;
END
----
CREATE TRIGGER qx_post_transfer_in_line_ins AFTER INSERT ON D8303A FOR EACH ROW
BEGIN
INSERT INTO d1802 (WL_ID, CK_ID, CHECK_KC, K0, K1, K2, K3, K4, K5, K6, K7, K8, K9) SELECT NEW.WL_ID, NEW.CK_ID_IN, ifnull((SELECT st.CHECK_KC FROM d1800 st WHERE st.K_ID=NEW.K_ID),0), ifnull(NEW.Y0,0), ifnull(NEW.Y1,0), ifnull(NEW.Y2,0), ifnull(NEW.Y3,0), ifnull(NEW.Y4,0), ifnull(NEW.Y5,0), ifnull(NEW.Y6,0), ifnull(NEW.Y7,0), ifnull(NEW.Y8,0), ifnull(NEW.Y9,0) WHERE EXISTS (SELECT 1 FROM D8303 h WHERE h.NOID=NEW.NOID AND h.Y=1) AND NEW.CK_ID_IN IS NOT NULL ON CONFLICT (WL_ID, CK_ID) DO UPDATE SET K0=K0+excluded.K0, K1=K1+excluded.K1, K2=K2+excluded.K2, K3=K3+excluded.K3, K4=K4+excluded.K4, K5=K5+excluded.K5, K6=K6+excluded.K6, K7=K7+excluded.K7, K8=K8+excluded.K8, K9=K9+excluded.K9;
END
----
CREATE TRIGGER qx_post_transfer_in_line_del AFTER DELETE ON D8303A FOR EACH ROW
BEGIN
UPDATE d1802 SET K0=K0+-ifnull(OLD.Y0,0), K1=K1+-ifnull(OLD.Y1,0), K2=K2+-ifnull(OLD.Y2,0), K3=K3+-ifnull(OLD.Y3,0), K4=K4+-ifnull(OLD.Y4,0), K5=K5+-ifnull(OLD.Y5,0), K6=K6+-ifnull(OLD.Y6,0), K7=K7+-ifnull(OLD.Y7,0), K8=K8+-ifnull(OLD.Y8,0), K9=K9+-ifnull(OLD.Y9,0) WHERE WL_ID=OLD.WL_ID AND CK_ID=OLD.CK_ID_IN AND EXISTS (SELECT 1 FROM D8303 h WHERE h.NOID=OLD.NOID AND h.Y=1);
END
----
CREATE TRIGGER qx_post_transfer_in_line_upd AFTER UPDATE ON D8303A FOR EACH ROW WHEN OLD.NOID IS NOT NEW.NOID OR OLD.WL_ID IS NOT NEW.WL_ID OR OLD.K_ID IS NOT NEW.K_ID OR OLD.CK_ID_IN IS NOT NEW.CK_ID_IN OR OLD.Y0 IS NOT NEW.Y0 OR OLD.Y1 IS NOT NEW.Y1 OR OLD.Y2 IS NOT NEW.Y2 OR OLD.Y3 IS NOT NEW.Y3 OR OLD.Y4 IS NOT NEW.Y4 OR OLD.Y5 IS NOT NEW.Y5 OR OLD.Y6 IS NOT NEW.Y6 OR OLD.Y7 IS NOT NEW.Y7 OR OLD.Y8 IS NOT NEW.Y8 OR OLD.Y9 IS NOT NEW.Y9
BEGIN
UPDATE d1802 SET K0=K0+-ifnull(OLD.Y0,0), K1=K1+-ifnull(OLD.Y1,0), K2=K2+-ifnull(OLD.Y2,0), K3=K3+-ifnull(OLD.Y3,0), K4=K4+-ifnull(OLD.Y4,0), K5=K5+-ifnull(OLD.Y5,0), K6=K6+-ifnull(OLD.Y6,0), K7=K7+-ifnull(OLD.Y7,0), K8=K8+-ifnull(OLD.Y8,0), K9=K9+-ifnull(OLD.Y9,0) WHERE WL_ID=OLD.WL_ID AND CK_ID=OLD.CK_ID_IN AND EXISTS (SELECT 1 FROM D8303 h WHERE h.NOID=OLD.NOID AND h.Y=1);
INSERT INTO d1802 (WL_ID, CK_ID, CHECK_KC, K0, K1, K2, K3, K4, K5, K6, K7, K8, K9) SELECT NEW.WL_ID, NEW.CK_ID_IN, ifnull((SELECT st.CHECK_KC FROM d1800 st WHERE st.K_ID=NEW.K_ID),0), ifnull(NEW.Y0,0), ifnull(NEW.Y1,0), ifnull(NEW.Y2,0), ifnull(NEW.Y3,0), ifnull(NEW.Y4,0), ifnull(NEW.Y5,0), ifnull(NEW.Y6,0), ifnull(NEW.Y7,0), ifnull(NEW.Y8,0), ifnull(NEW.Y9,0) WHERE EXISTS (SELECT 1 FROM D8303 h WHERE h.NOID=NEW.NOID AND h.Y=1) AND NEW.CK_ID_IN IS NOT NULL ON CONFLICT (WL_ID, CK_ID) DO UPDATE SET K0=K0+excluded.K0, K1=K1+excluded.K1, K2=K2+excluded.K2, K3=K3+excluded.K3, K4=K4+excluded.K4, K5=K5+excluded.K5, K6=K6+excluded.K6, K7=K7+excluded.K7, K8=K8+excluded.K8, K9=K9+excluded.K9;
END
----
CREATE TRIGGER qx_post_transfer_in_head_upd AFTER UPDATE ON D8303 FOR EACH ROW WHEN ifnull(OLD.Y,0)=1 <> ifnull(NEW.Y,0)=1 OR OLD.NOID IS NOT NEW.NOID
BEGIN
UPDATE d1802 SET K0=K0+m.Q0, K1=K1+m.Q1, K2=K2+m.Q2, K3=K3+m.Q3, K4=K4+m.Q4, K5=K5+m.Q5, K6=K6+m.Q6, K7=K7+m.Q7, K8=K8+m.Q8, K9=K9+m.Q9 FROM (SELECT l.WL_ID AS WL_ID, l.CK_ID_IN AS CK_ID, -sum(ifnull(l.Y0,0)) AS Q0, -sum(ifnull(l.Y1,0)) AS Q1, -sum(ifnull(l.Y2,0)) AS Q2, -sum(ifnull(l.Y3,0)) AS Q3, -sum(ifnull(l.Y4,0)) AS Q4, -sum(ifnull(l.Y5,0)) AS Q5, -sum(ifnull(l.Y6,0)) AS Q6, -sum(ifnull(l.Y7,0)) AS Q7, -sum(ifnull(l.Y8,0)) AS Q8, -sum(ifnull(l.Y9,0)) AS Q9 FROM D8303A l WHERE ifnull(OLD.Y,0)=1 AND l.NOID=OLD.NOID GROUP BY l.WL_ID, l.CK_ID_IN) m WHERE d1802.WL_ID=m.WL_ID AND d1802.CK_ID=m.CK_ID;
INSERT INTO d1802 (WL_ID, CK_ID, CHECK_KC, K0, K1, K2, K3, K4, K5, K6, K7, K8, K9) SELECT l.WL_ID, l.CK_ID_IN, max(ifnull((SELECT st.CHECK_KC FROM d1800 st WHERE st.K_ID=l.K_ID),0)), sum(ifnull(l.Y0,0)), sum(ifnull(l.Y1,0)), sum(ifnull(l.Y2,0)), sum(ifnull(l.Y3,0)), sum(ifnull(l.Y4,0)), sum(ifnull(l.Y5,0)), sum(ifnull(l.Y6,0)), sum(ifnull(l.Y7,0)), sum(ifnull(l.Y8,0)), sum(ifnull(l.Y9,0)) FROM D8303A l WHERE ifnull(NEW.Y,0)=1 AND l.NOID=NEW.NOID AND l.CK_ID_IN IS NOT NULL GROUP BY l.WL_ID, l.CK_ID_IN ON CONFLICT (WL_ID, CK_ID) DO UPDATE SET K0=K0+excluded.K0, K1=K1+excluded.K1, K2=K2+excluded.K2, K3=K3+excluded.K3, K4=K4+excluded.K4, K5=K5+excluded.K5, K6=K6+excluded.K6, K7=K7+excluded.K7, K8=K8+excluded.K8, K9=K9+excluded.K9;
END
----
CREATE TRIGGER qx_post_transfer_in_head_ins AFTER INSERT ON D8303 FOR EACH ROW WHEN ifnull(NEW.Y,0)=1
BEGIN
INSERT INTO d1802 (WL_ID, CK_ID, CHECK_KC, K0, K1, K2, K3, K4, K5, K6, K7, K8, K9) SELECT l.WL_ID, l.CK_ID_IN, max(ifnull((SELECT st.CHECK_KC FROM d1800 st WHERE st.K_ID=l.K_ID),0)), sum(ifnull(l.Y0,0)), sum(ifnull(l.Y1,0)), sum(ifnull(l.Y2,0)), sum(ifnull(l.Y3,0)), sum(ifnull(l.Y4,0)), sum(ifnull(l.Y5,0)), sum(ifnull(l.Y6,0)), sum(ifnull(l.Y7,0)), sum(ifnull(l.Y8,0)), sum(ifnull(l.Y9,0)) FROM D8303A l WHERE 1 AND l.NOID=NEW.NOID AND l.CK_ID_IN IS NOT NULL GROUP BY l.WL_ID, l.CK_ID_IN ON CONFLICT (WL_ID, CK_ID) DO UPDATE SET K0=K0+excluded.K0, K1=K1+excluded.K1, K2=K2+excluded.K2, K3=K3+excluded.K3, K4=K4+excluded.K4, K5=K5+excluded.K5, K6=K6+excluded.K6, K7=K7+excluded.K7, K8=K8+excluded.K8, K9=K9+excluded.K9;
END
----
CREATE TRIGGER qx_post_pos_line_ins AFTER INSERT ON d712a FOR EACH ROW
BEGIN
INSERT INTO d1802 (WL_ID, CK_ID, CHECK_KC, K0, K1, K2, K3, K4, K5, K6, K7, K8, K9) SELECT NEW.WL_ID, (SELECT h.CK_ID FROM d712 h WHERE h.NOID=NEW.NOID), ifnull((SELECT st.CHECK_KC FROM d1801 s JOIN d1800 st ON st.K_ID=s.K_ID WHERE s.WL_ID=NEW.WL_ID),0), -ifnull(NEW.S0,0), -ifnull(NEW.S1,0), -ifnull(NEW.S2,0), -ifnull(NEW.S3,0), -ifnull(NEW.S4,0), -ifnull(NEW.S5,0), -ifnull(NEW.S6,0), -ifnull(NEW.S7,0), -ifnull(NEW.S8,0), -ifnull(NEW.S9,0) WHERE EXISTS (SELECT 1 FROM d712 h WHERE h.NOID=NEW.NOID) AND (SELECT h.CK_ID FROM d712 h WHERE h.NOID=NEW.NOID) IS NOT NULL ON CONFLICT (WL_ID, CK_ID) DO UPDATE SET K0=K0+excluded.K0, K1=K1+excluded.K1, K2=K2+excluded.K2, K3=K3+excluded.K3, K4=K4+excluded.K4, K5=K5+excluded.K5, K6=K6+excluded.K6, K7=K7+excluded.K7, K8=K8+excluded.K8, K9=K9+excluded.K9;
END
----
CREATE TRIGGER qx_post_pos_line_del AFTER DELETE ON d712a FOR EACH ROW
BEGIN
UPDATE d1802 SET K0=K0+ifnull(OLD.S0,0), K1=K1+ifnull(OLD.S1,0), K2=K2+ifnull(OLD.S2,0), K3=K3+ifnull(OLD.S3,0), K4=K4+ifnull(OLD.S4,0), K5=K5+ifnull(OLD.S5,0), K6=K6+ifnull(OLD.S6,0), K7=K7+ifnull(OLD.S7,0), K8=K8+ifnull(OLD.S8,0), K9=K9+ifnull(OLD.S9,0) WHERE WL_ID=OLD.WL_ID AND CK_ID=(SELECT h.CK_ID FROM d712 h WHERE h.NOID=OLD.NOID) AND EXISTS (SELECT 1 FROM d712 h WHERE h.NOID=OLD.NOID);
END
----
CREATE TRIGGER qx_post_pos_line_upd AFTER UPDATE ON d712a FOR EACH ROW WHEN OLD.NOID IS NOT NEW.NOID OR OLD.WL_ID IS NOT NEW.WL_ID OR OLD.S0 IS NOT NEW.S0 OR OLD.S1 IS NOT NEW.S1 OR OLD.S2 IS NOT NEW.S2 OR OLD.S3 IS NOT NEW.S3 OR OLD.S4 IS NOT NEW.S4 OR OLD.S5 IS NOT NEW.S5 OR OLD.S6 IS NOT NEW.S6 OR OLD.S7 IS NOT NEW.S7 OR OLD.S8 IS NOT NEW.S8 OR OLD.S9 IS NOT NEW.S9
BEGIN
UPDATE d1802 SET K0=K0+ifnull(OLD.S0,0), K1=K1+ifnull(OLD.S1,0), K2=K2+ifnull(OLD.S2,0), K3=K3+ifnull(OLD.S3,0), K4=K4+ifnull(OLD.S4,0), K5=K5+ifnull(OLD.S5,0), K6=K6+ifnull(OLD.S6,0), K7=K7+ifnull(OLD.S7,0), K8=K8+ifnull(OLD.S8,0), K9=K9+ifnull(OLD.S9,0) WHERE WL_ID=OLD.WL_ID AND CK_ID=(SELECT h.CK_ID FROM d712 h WHERE h.NOID=OLD.NOID) AND EXISTS (SELECT 1 FROM d712 h WHERE h.NOID=OLD.NOID);
INSERT INTO d1802 (WL_ID, CK_ID, CHECK_KC, K0, K1, K2, K3, K4, K5, K6, K7, K8, K9) SELECT NEW.WL_ID, (SELECT h.CK_ID FROM d712 h WHERE h.NOID=NEW.NOID), ifnull((SELECT st.CHECK_KC FROM d1801 s JOIN d1800 st ON st.K_ID=s.K_ID WHERE s.WL_ID=NEW.WL_ID),0), -ifnull(NEW.S0,0), -ifnull(NEW.S1,0), -ifnull(NEW.S2,0), -ifnull(NEW.S3,0), -ifnull(NEW.S4,0), -ifnull(NEW.S5,0), -ifnull(NEW.S6,0), -ifnull(NEW.S7,0), -ifnull(NEW.S8,0), -ifnull(NEW.S9,0) WHERE EXISTS (SELECT 1 FROM d712 h WHERE h.NOID=NEW.NOID) AND (SELECT h.CK_ID FROM d712 h WHERE h.NOID=NEW.NOID) IS NOT NULL ON CONFLICT (WL_ID, CK_ID) DO UPDATE SET K0=K0+excluded.K0, K1=K1+excluded.K1, K2=K2+excluded.K2, K3=K3+excluded.K3, K4=K4+excluded.K4, K5=K5+excluded.K5, K6=K6+excluded.K6, K7=K7+excluded.K7, K8=K8+excluded.K8, K9=K9+excluded.K9;
END
----
CREATE TRIGGER qx_post_pos_head_upd AFTER UPDATE ON d712 FOR EACH ROW WHEN 1 <> 1 OR OLD.NOID IS NOT NEW.NOID OR OLD.CK_ID IS NOT NEW.CK_ID
BEGIN
UPDATE d1802 SET K0=K0+m.Q0, K1=K1+m.Q1, K2=K2+m.Q2, K3=K3+m.Q3, K4=K4+m.Q4, K5=K5+m.Q5, K6=K6+m.Q6, K7=K7+m.Q7, K8=K8+m.Q8, K9=K9+m.Q9 FROM (SELECT l.WL_ID AS WL_ID, OLD.CK_ID AS CK_ID, sum(ifnull(l.S0,0)) AS Q0, sum(ifnull(l.S1,0)) AS Q1, sum(ifnull(l.S2,0)) AS Q2, sum(ifnull(l.S3,0)) AS Q3, sum(ifnull(l.S4,0)) AS Q4, sum(ifnull(l.S5,0)) AS Q5, sum(ifnull(l.S6,0)) AS Q6, sum(ifnull(l.S7,0)) AS Q7, sum(ifnull(l.S8,0)) AS Q8, sum(ifnull(l.S9,0)) AS Q9 FROM d712a l WHERE 1 AND l.NOID=OLD.NOID GROUP BY l.WL_ID, OLD.CK_ID) m WHERE d1802.WL_ID=m.WL_ID AND d1802.CK_ID=m.CK_ID;
INSERT INTO d1802 (WL_ID, CK_ID, CHECK_KC, K0, K1, K2, K3, K4, K5, K6, K7, K8, K9) SELECT l.WL_ID, NEW.CK_ID, max(ifnull((SELECT st.CHECK_KC FROM d1801 s JOIN d1800 st ON st.K_ID=s.K_ID WHERE s.WL_ID=l.WL_ID),0)), -sum(ifnull(l.S0,0)), -sum(ifnull(l.S1,0)), -sum(ifnull(l.S2,0)), -sum(ifnull(l.S3,0)), -sum(ifnull(l.S4,0)), -sum(ifnull(l.S5,0)), -sum(ifnull(l.S6,0)), -sum(ifnull(l.S7,0)), -sum(ifnull(l.S8,0)), -sum(ifnull(l.S9,0)) FROM d712a l WHERE 1 AND l.NOID=NEW.NOID AND NEW.CK_ID IS NOT NULL GROUP BY l.WL_ID, NEW.CK_ID ON CONFLICT (WL_ID, CK_ID) DO UPDATE SET K0=K0+excluded.K0, K1=K1+excluded.K1, K2=K2+excluded.K2, K3=K3+excluded.K3, K4=K4+excluded.K4, K5=K5+excluded.K5, K6=K6+excluded.K6, K7=K7+excluded.K7, K8=K8+excluded.K8, K9=K9+excluded.K9;
END
----
CREATE TRIGGER qx_post_pos_head_ins AFTER INSERT ON d712 FOR EACH ROW WHEN 1
BEGIN
INSERT INTO d1802 (WL_ID, CK_ID, CHECK_KC, K0, K1, K2, K3, K4, K5, K6, K7, K8, K9) SELECT l.WL_ID, NEW.CK_ID, max(ifnull((SELECT st.CHECK_KC FROM d1801 s JOIN d1800 st ON st.K_ID=s.K_ID WHERE s.WL_ID=l.WL_ID),0)), -sum(ifnull(l.S0,0)), -sum(ifnull(l.S1,0)), -sum(ifnull(l.S2,0)), -sum(ifnull(l.S3,0)), -sum(ifnull(l.S4,0)), -sum(ifnull(l.S5,0)), -sum(ifnull(l.S6,0)), -sum(ifnull(l.S7,0)), -sum(ifnull(l.S8,0)), -sum(ifnull(l.S9,0)) FROM d712a l WHERE 1 AND l.NOID=NEW.NOID AND NEW.CK_ID IS NOT NULL GROUP BY l.WL_ID, NEW.CK_ID ON CONFLICT (WL_ID, CK_ID) DO UPDATE SET K0=K0+excluded.K0, K1=K1+excluded.K1, K2=K2+excluded.K2, K3=K3+excluded.K3, K4=K4+excluded.K4, K5=K5+excluded.K5, K6=K6+excluded.K6, K7=K7+excluded.K7, K8=K8+excluded.K8, K9=K9+excluded.K9;
END
----
CREATE TRIGGER qx_doc_D8101_cascade BEFORE DELETE ON D8101 FOR EACH ROW
BEGIN
DELETE FROM D8101A WHERE NOID=OLD.NOID;
END
----
CREATE TRIGGER qx_closed_D8101_ins BEFORE INSERT ON D8101 FOR EACH ROW WHEN qx_guarded() AND NEW.BDATE < (SELECT max(CK_END_DATE) FROM sys_co)
BEGIN
SELECT qx_closed_period('D8101', NEW.NOID, NEW.BDATE, (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_D8101_upd BEFORE UPDATE ON D8101 FOR EACH ROW WHEN qx_guarded() AND (OLD.BDATE < (SELECT max(CK_END_DATE) FROM sys_co) OR NEW.BDATE < (SELECT max(CK_END_DATE) FROM sys_co))
BEGIN
SELECT qx_closed_period('D8101', OLD.NOID, min(OLD.BDATE, ifnull(NEW.BDATE, OLD.BDATE)), (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_D8101_del BEFORE DELETE ON D8101 FOR EACH ROW WHEN qx_guarded() AND OLD.BDATE < (SELECT max(CK_END_DATE) FROM sys_co)
BEGIN
SELECT qx_closed_period('D8101', OLD.NOID, OLD.BDATE, (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_D8101A_ins BEFORE INSERT ON D8101A FOR EACH ROW WHEN qx_guarded() AND (SELECT h.BDATE FROM D8101 h WHERE h.NOID=NEW.NOID) < (SELECT max(CK_END_DATE) FROM sys_co)
BEGIN
SELECT qx_closed_period('D8101', NEW.NOID, (SELECT h.BDATE FROM D8101 h WHERE h.NOID=NEW.NOID), (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_D8101A_upd BEFORE UPDATE ON D8101A FOR EACH ROW WHEN qx_guarded() AND ((SELECT h.BDATE FROM D8101 h WHERE h.NOID=OLD.NOID) < (SELECT max(CK_END_DATE) FROM sys_co) OR (SELECT h.BDATE FROM D8101 h WHERE h.NOID=NEW.NOID) < (SELECT max(CK_END_DATE) FROM sys_co))
BEGIN
SELECT qx_closed_period('D8101', OLD.NOID, min(ifnull((SELECT h.BDATE FROM D8101 h WHERE h.NOID=OLD.NOID),'9'), ifnull((SELECT h.BDATE FROM D8101 h WHERE h.NOID=NEW.NOID),'9')), (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_D8101A_del BEFORE DELETE ON D8101A FOR EACH ROW WHEN qx_guarded() AND (SELECT h.BDATE FROM D8101 h WHERE h.NOID=OLD.NOID) < (SELECT max(CK_END_DATE) FROM sys_co)
BEGIN
SELECT qx_closed_period('D8101', OLD.NOID, (SELECT h.BDATE FROM D8101 h WHERE h.NOID=OLD.NOID), (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_doc_D8102_cascade BEFORE DELETE ON D8102 FOR EACH ROW
BEGIN
DELETE FROM D8102A WHERE NOID=OLD.NOID;
END
----
CREATE TRIGGER qx_closed_D8102_ins BEFORE INSERT ON D8102 FOR EACH ROW WHEN qx_guarded() AND NEW.BDATE < (SELECT max(CK_END_DATE) FROM sys_co)
BEGIN
SELECT qx_closed_period('D8102', NEW.NOID, NEW.BDATE, (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_D8102_upd BEFORE UPDATE ON D8102 FOR EACH ROW WHEN qx_guarded() AND (OLD.BDATE < (SELECT max(CK_END_DATE) FROM sys_co) OR NEW.BDATE < (SELECT max(CK_END_DATE) FROM sys_co))
BEGIN
SELECT qx_closed_period('D8102', OLD.NOID, min(OLD.BDATE, ifnull(NEW.BDATE, OLD.BDATE)), (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_D8102_del BEFORE DELETE ON D8102 FOR EACH ROW WHEN qx_guarded() AND OLD.BDATE < (SELECT max(CK_END_DATE) FROM sys_co)
BEGIN
SELECT qx_closed_period('D8102', OLD.NOID, OLD.BDATE, (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_D8102A_ins BEFORE INSERT ON D8102A FOR EACH ROW WHEN qx_guarded() AND (SELECT h.BDATE FROM D8102 h WHERE h.NOID=NEW.NOID) < (SELECT max(CK_END_DATE) FROM sys_co)
BEGIN
SELECT qx_closed_period('D8102', NEW.NOID, (SELECT h.BDATE FROM D8102 h WHERE h.NOID=NEW.NOID), (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_D8102A_upd BEFORE UPDATE ON D8102A FOR EACH ROW WHEN qx_guarded() AND ((SELECT h.BDATE FROM D8102 h WHERE h.NOID=OLD.NOID) < (SELECT max(CK_END_DATE) FROM sys_co) OR (SELECT h.BDATE FROM D8102 h WHERE h.NOID=NEW.NOID) < (SELECT max(CK_END_DATE) FROM sys_co))
BEGIN
SELECT qx_closed_period('D8102', OLD.NOID, min(ifnull((SELECT h.BDATE FROM D8102 h WHERE h.NOID=OLD.NOID),'9'), ifnull((SELECT h.BDATE FROM D8102 h WHERE h.NOID=NEW.NOID),'9')), (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_D8102A_del BEFORE DELETE ON D8102A FOR EACH ROW WHEN qx_guarded() AND (SELECT h.BDATE FROM D8102 h WHERE h.NOID=OLD.NOID) < (SELECT max(CK_END_DATE) FROM sys_co)
BEGIN
SELECT qx_closed_period('D8102', OLD.NOID, (SELECT h.BDATE FROM D8102 h WHERE h.NOID=OLD.NOID), (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_doc_D8201_cascade BEFORE DELETE ON D8201 FOR EACH ROW
BEGIN
DELETE FROM D8201A WHERE NOID=OLD.NOID;
END
----
CREATE TRIGGER qx_closed_D8201_ins BEFORE INSERT ON D8201 FOR EACH ROW WHEN qx_guarded() AND NEW.BDATE < (SELECT max(CK_END_DATE) FROM sys_co)
BEGIN
SELECT qx_closed_period('D8201', NEW.NOID, NEW.BDATE, (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_D8201_upd BEFORE UPDATE ON D8201 FOR EACH ROW WHEN qx_guarded() AND (OLD.BDATE < (SELECT max(CK_END_DATE) FROM sys_co) OR NEW.BDATE < (SELECT max(CK_END_DATE) FROM sys_co))
BEGIN
SELECT qx_closed_period('D8201', OLD.NOID, min(OLD.BDATE, ifnull(NEW.BDATE, OLD.BDATE)), (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_D8201_del BEFORE DELETE ON D8201 FOR EACH ROW WHEN qx_guarded() AND OLD.BDATE < (SELECT max(CK_END_DATE) FROM sys_co)
BEGIN
SELECT qx_closed_period('D8201', OLD.NOID, OLD.BDATE, (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_D8201A_ins BEFORE INSERT ON D8201A FOR EACH ROW WHEN qx_guarded() AND (SELECT h.BDATE FROM D8201 h WHERE h.NOID=NEW.NOID) < (SELECT max(CK_END_DATE) FROM sys_co)
BEGIN
SELECT qx_closed_period('D8201', NEW.NOID, (SELECT h.BDATE FROM D8201 h WHERE h.NOID=NEW.NOID), (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_D8201A_upd BEFORE UPDATE ON D8201A FOR EACH ROW WHEN qx_guarded() AND ((SELECT h.BDATE FROM D8201 h WHERE h.NOID=OLD.NOID) < (SELECT max(CK_END_DATE) FROM sys_co) OR (SELECT h.BDATE FROM D8201 h WHERE h.NOID=NEW.NOID) < (SELECT max(CK_END_DATE) FROM sys_co))
BEGIN
SELECT qx_closed_period('D8201', OLD.NOID, min(ifnull((SELECT h.BDATE FROM D8201 h WHERE h.NOID=OLD.NOID),'9'), ifnull((SELECT h.BDATE FROM D8201 h WHERE h.NOID=NEW.NOID),'9')), (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_D8201A_del BEFORE DELETE ON D8201A FOR EACH ROW WHEN qx_guarded() AND (SELECT h.BDATE FROM D8201 h WHERE h.NOID=OLD.NOID) < (SELECT max(CK_END_DATE) FROM sys_co)
BEGIN
SELECT qx_closed_period('D8201', OLD.NOID, (SELECT h.BDATE FROM D8201 h WHERE h.NOID=OLD.NOID), (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_doc_D8202_cascade BEFORE DELETE ON D8202 FOR EACH ROW
BEGIN
DELETE FROM D8202A WHERE NOID=OLD.NOID;
END
----
CREATE TRIGGER qx_closed_D8202_ins BEFORE INSERT ON D8202 FOR EACH ROW WHEN qx_guarded() AND NEW.BDATE < (SELECT max(CK_END_DATE) FROM sys_co)
BEGIN
SELECT qx_closed_period('D8202', NEW.NOID, NEW.BDATE, (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_D8202_upd BEFORE UPDATE ON D8202 FOR EACH ROW WHEN qx_guarded() AND (OLD.BDATE < (SELECT max(CK_END_DATE) FROM sys_co) OR NEW.BDATE < (SELECT max(CK_END_DATE) FROM sys_co))
BEGIN
SELECT qx_closed_period('D8202', OLD.NOID, min(OLD.BDATE, ifnull(NEW.BDATE, OLD.BDATE)), (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_D8202_del BEFORE DELETE ON D8202 FOR EACH ROW WHEN qx_guarded() AND OLD.BDATE < (SELECT max(CK_END_DATE) FROM sys_co)
BEGIN
SELECT qx_closed_period('D8202', OLD.NOID, OLD.BDATE, (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_D8202A_ins BEFORE INSERT ON D8202A FOR EACH ROW WHEN qx_guarded() AND (SELECT h.BDATE FROM D8202 h WHERE h.NOID=NEW.NOID) < (SELECT max(CK_END_DATE) FROM sys_co)
BEGIN
SELECT qx_closed_period('D8202', NEW.NOID, (SELECT h.BDATE FROM D8202 h WHERE h.NOID=NEW.NOID), (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_D8202A_upd BEFORE UPDATE ON D8202A FOR EACH ROW WHEN qx_guarded() AND ((SELECT h.BDATE FROM D8202 h WHERE h.NOID=OLD.NOID) < (SELECT max(CK_END_DATE) FROM sys_co) OR (SELECT h.BDATE FROM D8202 h WHERE h.NOID=NEW.NOID) < (SELECT max(CK_END_DATE) FROM sys_co))
BEGIN
SELECT qx_closed_period('D8202', OLD.NOID, min(ifnull((SELECT h.BDATE FROM D8202 h WHERE h.NOID=OLD.NOID),'9'), ifnull((SELECT h.BDATE FROM D8202 h WHERE h.NOID=NEW.NOID),'9')), (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_D8202A_del BEFORE DELETE ON D8202A FOR EACH ROW WHEN qx_guarded() AND (SELECT h.BDATE FROM D8202 h WHERE h.NOID=OLD.NOID) < (SELECT max(CK_END_DATE) FROM sys_co)
BEGIN
SELECT qx_closed_period('D8202', OLD.NOID, (SELECT h.BDATE FROM D8202 h WHERE h.NOID=OLD.NOID), (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_doc_D8203_cascade BEFORE DELETE ON D8203 FOR EACH ROW
BEGIN
DELETE FROM D8203A WHERE NOID=OLD.NOID;
END
----
CREATE TRIGGER qx_closed_D8203_ins BEFORE INSERT ON D8203 FOR EACH ROW WHEN qx_guarded() AND NEW.BDATE < (SELECT max(CK_END_DATE) FROM sys_co)
BEGIN
SELECT qx_closed_period('D8203', NEW.NOID, NEW.BDATE, (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_D8203_upd BEFORE UPDATE ON D8203 FOR EACH ROW WHEN qx_guarded() AND (OLD.BDATE < (SELECT max(CK_END_DATE) FROM sys_co) OR NEW.BDATE < (SELECT max(CK_END_DATE) FROM sys_co))
BEGIN
SELECT qx_closed_period('D8203', OLD.NOID, min(OLD.BDATE, ifnull(NEW.BDATE, OLD.BDATE)), (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_D8203_del BEFORE DELETE ON D8203 FOR EACH ROW WHEN qx_guarded() AND OLD.BDATE < (SELECT max(CK_END_DATE) FROM sys_co)
BEGIN
SELECT qx_closed_period('D8203', OLD.NOID, OLD.BDATE, (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_D8203A_ins BEFORE INSERT ON D8203A FOR EACH ROW WHEN qx_guarded() AND (SELECT h.BDATE FROM D8203 h WHERE h.NOID=NEW.NOID) < (SELECT max(CK_END_DATE) FROM sys_co)
BEGIN
SELECT qx_closed_period('D8203', NEW.NOID, (SELECT h.BDATE FROM D8203 h WHERE h.NOID=NEW.NOID), (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_D8203A_upd BEFORE UPDATE ON D8203A FOR EACH ROW WHEN qx_guarded() AND ((SELECT h.BDATE FROM D8203 h WHERE h.NOID=OLD.NOID) < (SELECT max(CK_END_DATE) FROM sys_co) OR (SELECT h.BDATE FROM D8203 h WHERE h.NOID=NEW.NOID) < (SELECT max(CK_END_DATE) FROM sys_co))
BEGIN
SELECT qx_closed_period('D8203', OLD.NOID, min(ifnull((SELECT h.BDATE FROM D8203 h WHERE h.NOID=OLD.NOID),'9'), ifnull((SELECT h.BDATE FROM D8203 h WHERE h.NOID=NEW.NOID),'9')), (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_D8203A_del BEFORE DELETE ON D8203A FOR EACH ROW WHEN qx_guarded() AND (SELECT h.BDATE FROM D8203 h WHERE h.NOID=OLD.NOID) < (SELECT max(CK_END_DATE) FROM sys_co)
BEGIN
SELECT qx_closed_period('D8203', OLD.NOID, (SELECT h.BDATE FROM D8203 h WHERE h.NOID=OLD.NOID), (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_doc_d8300_cascade BEFORE DELETE ON d8300 FOR EACH ROW
BEGIN
DELETE FROM d8300A WHERE NOID=OLD.NOID;
END
----
CREATE TRIGGER qx_closed_d8300_ins BEFORE INSERT ON d8300 FOR EACH ROW WHEN qx_guarded() AND NEW.BDATE < (SELECT max(CK_END_DATE) FROM sys_co)
BEGIN
SELECT qx_closed_period('d8300', NEW.NOID, NEW.BDATE, (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_d8300_upd BEFORE UPDATE ON d8300 FOR EACH ROW WHEN qx_guarded() AND (OLD.BDATE < (SELECT max(CK_END_DATE) FROM sys_co) OR NEW.BDATE < (SELECT max(CK_END_DATE) FROM sys_co))
BEGIN
SELECT qx_closed_period('d8300', OLD.NOID, min(OLD.BDATE, ifnull(NEW.BDATE, OLD.BDATE)), (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_d8300_del BEFORE DELETE ON d8300 FOR EACH ROW WHEN qx_guarded() AND OLD.BDATE < (SELECT max(CK_END_DATE) FROM sys_co)
BEGIN
SELECT qx_closed_period('d8300', OLD.NOID, OLD.BDATE, (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_d8300A_ins BEFORE INSERT ON d8300A FOR EACH ROW WHEN qx_guarded() AND (SELECT h.BDATE FROM d8300 h WHERE h.NOID=NEW.NOID) < (SELECT max(CK_END_DATE) FROM sys_co)
BEGIN
SELECT qx_closed_period('d8300', NEW.NOID, (SELECT h.BDATE FROM d8300 h WHERE h.NOID=NEW.NOID), (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_d8300A_upd BEFORE UPDATE ON d8300A FOR EACH ROW WHEN qx_guarded() AND ((SELECT h.BDATE FROM d8300 h WHERE h.NOID=OLD.NOID) < (SELECT max(CK_END_DATE) FROM sys_co) OR (SELECT h.BDATE FROM d8300 h WHERE h.NOID=NEW.NOID) < (SELECT max(CK_END_DATE) FROM sys_co))
BEGIN
SELECT qx_closed_period('d8300', OLD.NOID, min(ifnull((SELECT h.BDATE FROM d8300 h WHERE h.NOID=OLD.NOID),'9'), ifnull((SELECT h.BDATE FROM d8300 h WHERE h.NOID=NEW.NOID),'9')), (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_d8300A_del BEFORE DELETE ON d8300A FOR EACH ROW WHEN qx_guarded() AND (SELECT h.BDATE FROM d8300 h WHERE h.NOID=OLD.NOID) < (SELECT max(CK_END_DATE) FROM sys_co)
BEGIN
SELECT qx_closed_period('d8300', OLD.NOID, (SELECT h.BDATE FROM d8300 h WHERE h.NOID=OLD.NOID), (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_doc_d8301_cascade BEFORE DELETE ON d8301 FOR EACH ROW
BEGIN
DELETE FROM d8301A WHERE NOID=OLD.NOID;
END
----
CREATE TRIGGER qx_closed_d8301_ins BEFORE INSERT ON d8301 FOR EACH ROW WHEN qx_guarded() AND NEW.BDATE < (SELECT max(CK_END_DATE) FROM sys_co)
BEGIN
SELECT qx_closed_period('d8301', NEW.NOID, NEW.BDATE, (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_d8301_upd BEFORE UPDATE ON d8301 FOR EACH ROW WHEN qx_guarded() AND (OLD.BDATE < (SELECT max(CK_END_DATE) FROM sys_co) OR NEW.BDATE < (SELECT max(CK_END_DATE) FROM sys_co))
BEGIN
SELECT qx_closed_period('d8301', OLD.NOID, min(OLD.BDATE, ifnull(NEW.BDATE, OLD.BDATE)), (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_d8301_del BEFORE DELETE ON d8301 FOR EACH ROW WHEN qx_guarded() AND OLD.BDATE < (SELECT max(CK_END_DATE) FROM sys_co)
BEGIN
SELECT qx_closed_period('d8301', OLD.NOID, OLD.BDATE, (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_d8301A_ins BEFORE INSERT ON d8301A FOR EACH ROW WHEN qx_guarded() AND (SELECT h.BDATE FROM d8301 h WHERE h.NOID=NEW.NOID) < (SELECT max(CK_END_DATE) FROM sys_co)
BEGIN
SELECT qx_closed_period('d8301', NEW.NOID, (SELECT h.BDATE FROM d8301 h WHERE h.NOID=NEW.NOID), (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_d8301A_upd BEFORE UPDATE ON d8301A FOR EACH ROW WHEN qx_guarded() AND ((SELECT h.BDATE FROM d8301 h WHERE h.NOID=OLD.NOID) < (SELECT max(CK_END_DATE) FROM sys_co) OR (SELECT h.BDATE FROM d8301 h WHERE h.NOID=NEW.NOID) < (SELECT max(CK_END_DATE) FROM sys_co))
BEGIN
SELECT qx_closed_period('d8301', OLD.NOID, min(ifnull((SELECT h.BDATE FROM d8301 h WHERE h.NOID=OLD.NOID),'9'), ifnull((SELECT h.BDATE FROM d8301 h WHERE h.NOID=NEW.NOID),'9')), (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_d8301A_del BEFORE DELETE ON d8301A FOR EACH ROW WHEN qx_guarded() AND (SELECT h.BDATE FROM d8301 h WHERE h.NOID=OLD.NOID) < (SELECT max(CK_END_DATE) FROM sys_co)
BEGIN
SELECT qx_closed_period('d8301', OLD.NOID, (SELECT h.BDATE FROM d8301 h WHERE h.NOID=OLD.NOID), (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_doc_D8303_cascade BEFORE DELETE ON D8303 FOR EACH ROW
BEGIN
DELETE FROM D8303A WHERE NOID=OLD.NOID;
END
----
CREATE TRIGGER qx_closed_D8303_ins BEFORE INSERT ON D8303 FOR EACH ROW WHEN qx_guarded() AND NEW.BDATE < (SELECT max(CK_END_DATE) FROM sys_co)
BEGIN
SELECT qx_closed_period('D8303', NEW.NOID, NEW.BDATE, (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_D8303_upd BEFORE UPDATE ON D8303 FOR EACH ROW WHEN qx_guarded() AND (OLD.BDATE < (SELECT max(CK_END_DATE) FROM sys_co) OR NEW.BDATE < (SELECT max(CK_END_DATE) FROM sys_co)) AND (OLD.NOID IS NOT NEW.NOID OR OLD.T IS NOT NEW.T OR OLD.CK_ID IS NOT NEW.CK_ID OR OLD.CK_ID_IN IS NOT NEW.CK_ID_IN OR OLD.BDATE IS NOT NEW.BDATE)
BEGIN
SELECT qx_closed_period('D8303', OLD.NOID, min(OLD.BDATE, ifnull(NEW.BDATE, OLD.BDATE)), (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_D8303_del BEFORE DELETE ON D8303 FOR EACH ROW WHEN qx_guarded() AND OLD.BDATE < (SELECT max(CK_END_DATE) FROM sys_co)
BEGIN
SELECT qx_closed_period('D8303', OLD.NOID, OLD.BDATE, (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_D8303A_ins BEFORE INSERT ON D8303A FOR EACH ROW WHEN qx_guarded() AND (SELECT h.BDATE FROM D8303 h WHERE h.NOID=NEW.NOID) < (SELECT max(CK_END_DATE) FROM sys_co)
BEGIN
SELECT qx_closed_period('D8303', NEW.NOID, (SELECT h.BDATE FROM D8303 h WHERE h.NOID=NEW.NOID), (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_D8303A_upd BEFORE UPDATE ON D8303A FOR EACH ROW WHEN qx_guarded() AND ((SELECT h.BDATE FROM D8303 h WHERE h.NOID=OLD.NOID) < (SELECT max(CK_END_DATE) FROM sys_co) OR (SELECT h.BDATE FROM D8303 h WHERE h.NOID=NEW.NOID) < (SELECT max(CK_END_DATE) FROM sys_co)) AND (OLD.NOID IS NOT NEW.NOID OR OLD.WL_ID IS NOT NEW.WL_ID OR OLD.K_ID IS NOT NEW.K_ID OR OLD.CK_ID IS NOT NEW.CK_ID OR OLD.CK_ID_IN IS NOT NEW.CK_ID_IN OR OLD.S0 IS NOT NEW.S0 OR OLD.S1 IS NOT NEW.S1 OR OLD.S2 IS NOT NEW.S2 OR OLD.S3 IS NOT NEW.S3 OR OLD.S4 IS NOT NEW.S4 OR OLD.S5 IS NOT NEW.S5 OR OLD.S6 IS NOT NEW.S6 OR OLD.S7 IS NOT NEW.S7 OR OLD.S8 IS NOT NEW.S8 OR OLD.S9 IS NOT NEW.S9)
BEGIN
SELECT qx_closed_period('D8303', OLD.NOID, min(ifnull((SELECT h.BDATE FROM D8303 h WHERE h.NOID=OLD.NOID),'9'), ifnull((SELECT h.BDATE FROM D8303 h WHERE h.NOID=NEW.NOID),'9')), (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_D8303A_del BEFORE DELETE ON D8303A FOR EACH ROW WHEN qx_guarded() AND (SELECT h.BDATE FROM D8303 h WHERE h.NOID=OLD.NOID) < (SELECT max(CK_END_DATE) FROM sys_co)
BEGIN
SELECT qx_closed_period('D8303', OLD.NOID, (SELECT h.BDATE FROM D8303 h WHERE h.NOID=OLD.NOID), (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_doc_d712_cascade BEFORE DELETE ON d712 FOR EACH ROW
BEGIN
DELETE FROM d712a WHERE NOID=OLD.NOID;
END
----
CREATE TRIGGER qx_closed_d712_ins BEFORE INSERT ON d712 FOR EACH ROW WHEN qx_guarded() AND NEW.BDATE < (SELECT max(CK_END_DATE) FROM sys_co)
BEGIN
SELECT qx_closed_period('d712', NEW.NOID, NEW.BDATE, (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_d712_upd BEFORE UPDATE ON d712 FOR EACH ROW WHEN qx_guarded() AND (OLD.BDATE < (SELECT max(CK_END_DATE) FROM sys_co) OR NEW.BDATE < (SELECT max(CK_END_DATE) FROM sys_co))
BEGIN
SELECT qx_closed_period('d712', OLD.NOID, min(OLD.BDATE, ifnull(NEW.BDATE, OLD.BDATE)), (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_d712_del BEFORE DELETE ON d712 FOR EACH ROW WHEN qx_guarded() AND OLD.BDATE < (SELECT max(CK_END_DATE) FROM sys_co)
BEGIN
SELECT qx_closed_period('d712', OLD.NOID, OLD.BDATE, (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_d712a_ins BEFORE INSERT ON d712a FOR EACH ROW WHEN qx_guarded() AND (SELECT h.BDATE FROM d712 h WHERE h.NOID=NEW.NOID) < (SELECT max(CK_END_DATE) FROM sys_co)
BEGIN
SELECT qx_closed_period('d712', NEW.NOID, (SELECT h.BDATE FROM d712 h WHERE h.NOID=NEW.NOID), (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_d712a_upd BEFORE UPDATE ON d712a FOR EACH ROW WHEN qx_guarded() AND ((SELECT h.BDATE FROM d712 h WHERE h.NOID=OLD.NOID) < (SELECT max(CK_END_DATE) FROM sys_co) OR (SELECT h.BDATE FROM d712 h WHERE h.NOID=NEW.NOID) < (SELECT max(CK_END_DATE) FROM sys_co))
BEGIN
SELECT qx_closed_period('d712', OLD.NOID, min(ifnull((SELECT h.BDATE FROM d712 h WHERE h.NOID=OLD.NOID),'9'), ifnull((SELECT h.BDATE FROM d712 h WHERE h.NOID=NEW.NOID),'9')), (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_d712a_del BEFORE DELETE ON d712a FOR EACH ROW WHEN qx_guarded() AND (SELECT h.BDATE FROM d712 h WHERE h.NOID=OLD.NOID) < (SELECT max(CK_END_DATE) FROM sys_co)
BEGIN
SELECT qx_closed_period('d712', OLD.NOID, (SELECT h.BDATE FROM d712 h WHERE h.NOID=OLD.NOID), (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_transfer_in_head BEFORE UPDATE ON D8303 FOR EACH ROW WHEN qx_guarded() AND ((ifnull(OLD.Y,0)=1 AND OLD.YDATE < (SELECT max(CK_END_DATE) FROM sys_co)) OR (ifnull(NEW.Y,0)=1 AND NEW.YDATE < (SELECT max(CK_END_DATE) FROM sys_co))) AND (OLD.Y IS NOT NEW.Y OR OLD.YDATE IS NOT NEW.YDATE)
BEGIN
SELECT qx_closed_period('D8303', OLD.NOID, min(ifnull(OLD.YDATE,'9'), ifnull(NEW.YDATE,'9')), (SELECT max(CK_END_DATE) FROM sys_co));
END
----
CREATE TRIGGER qx_closed_transfer_in_line BEFORE UPDATE ON D8303A FOR EACH ROW WHEN qx_guarded() AND (SELECT h.YDATE FROM D8303 h WHERE h.NOID=OLD.NOID AND ifnull(h.Y,0)=1) < (SELECT max(CK_END_DATE) FROM sys_co) AND (OLD.WL_ID IS NOT NEW.WL_ID OR OLD.CK_ID_IN IS NOT NEW.CK_ID_IN OR OLD.Y0 IS NOT NEW.Y0 OR OLD.Y1 IS NOT NEW.Y1 OR OLD.Y2 IS NOT NEW.Y2 OR OLD.Y3 IS NOT NEW.Y3 OR OLD.Y4 IS NOT NEW.Y4 OR OLD.Y5 IS NOT NEW.Y5 OR OLD.Y6 IS NOT NEW.Y6 OR OLD.Y7 IS NOT NEW.Y7 OR OLD.Y8 IS NOT NEW.Y8 OR OLD.Y9 IS NOT NEW.Y9)
BEGIN
SELECT qx_closed_period('D8303', OLD.NOID, (SELECT h.YDATE FROM D8303 h WHERE h.NOID=OLD.NOID AND ifnull(h.Y,0)=1), (SELECT max(CK_END_DATE) FROM sys_co));
END
----
