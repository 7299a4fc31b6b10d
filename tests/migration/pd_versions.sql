-- Databases of the partial-discharge results as they are in the field at each version, written down by hand, not made by
-- the steps. The form is that of editor_versions.sql. The tables of the first version have sequences.

current 8

1- CREATE TABLE features ($features
1- CREATE TABLE feature_defaults (featureid INT8 REFERENCES features(id), value VARCHAR(44), changed_at TIME,
 PRIMARY KEY (featureid))
1- INSERT INTO features (id, name, type, module) VALUES (7, 'PdVersion', 'I', '')
1- INSERT INTO feature_defaults (featureid, value) VALUES (7, '$version')
1- SELECT name, value FROM features JOIN feature_defaults ON featureid = id => PdVersion|$current

1- CREATE TABLE pd_file (id TEXT, name TEXT, data BYTES, hash BYTES, report TEXT, $end
1- INSERT INTO pd_file VALUES ('1', 'it''s', $image, $image, 'v4', FALSE, TRUE, '$time')
1- SELECT * FROM pd_file => 1|it's|hex:01ff00|hex:01ff00|v4|0|1|$time

1- CREATE TABLE pd_task (id TEXT, cable TEXT, creationdate TIME, station TEXT, tester TEXT, path TEXT, comment TEXT,
 devices TEXT, kvtrrecommentation TEXT, $end
1- INSERT INTO pd_task VALUES ('t1', 'it''s', '$time', 'v3', 'v4', 'v5', 'v6', 'v7', 'v8', FALSE, TRUE, '$time')
1- SELECT * FROM pd_task => t1|it's|$time|v3|v4|v5|v6|v7|v8|0|1|$time

1- CREATE TABLE pd_report (id TEXT, task TEXT, creationtimestamp TIME, flags INT4, recommentation TEXT, $end
1- INSERT INTO pd_report VALUES ('1', 'it''s', '$time', 3, 'v4', FALSE, TRUE, '$time')
1- SELECT * FROM pd_report => 1|it's|$time|3|v4|0|1|$time

1- CREATE TABLE pd_mapping (id TEXT, report TEXT, load NUM, phase INT4, class INT4, polarity BOOL, voltage NUM,
 position NUM, mode INT4, $end
1- INSERT INTO pd_mapping VALUES ('1', 'it''s', 2.25, 3, 4, FALSE, NULL, 7.25, 8, FALSE, TRUE, '$time')
1- SELECT * FROM pd_mapping => 1|it's|2.25|3|4|0|NULL|7.25|8|0|1|$time

2- CREATE TABLE "pd_report_mapping" (reportid TEXT, reportindex INT8)
2- INSERT INTO pd_report_mapping VALUES ('v0', 1)
2- SELECT * FROM pd_report_mapping => v0|1

2- CREATE TABLE "pd_filter" (reportid TEXT, key TEXT, value TEXT)
2- INSERT INTO pd_filter VALUES ('v0', 'it''s', 'v2')
2- SELECT * FROM pd_filter => v0|it's|v2

2- CREATE TABLE "pd_iec" (reportid TEXT, phase INT4, groundnoise NUM, frequency NUM, pdivvoltage NUM, pdevvoltage
 NUM, pdivmaxcharge NUM, pdu0maxcharge NUM, pdu0medcharge NUM, pdu01_7maxcharge NUM, pdu01_7medcharge NUM,
 pdu02_0maxcharge NUM, pdu02_0medcharge NUM, timestamp TIME)
2- INSERT INTO pd_iec VALUES ('v0', 1, 2.25, NULL, 4.25, 5.25, NULL, 7.25, 8.25, NULL, 10.25, 11.25, NULL, '$time')
2- SELECT * FROM pd_iec => v0|1|2.25|NULL|4.25|5.25|NULL|7.25|8.25|NULL|10.25|11.25|NULL|$time

3- CREATE TABLE "pd_evaluation" (taskid TEXT REFERENCES pd_task(id) ON DELETE CASCADE, comment TEXT, evaluation TEXT,
 manual INT4, oldcable INT4, eventselectionmodel INT4, PRIMARY KEY (taskid))
3- INSERT INTO pd_evaluation VALUES ('t1', 'it''s', 'v2', 3, 4, 5)
3- SELECT * FROM pd_evaluation => t1|it's|v2|3|4|5

4- CREATE TABLE "pd_mapping_event" (id TEXT, report_id TEXT, load NUM, phase INT4, class INT4, polarity BOOL, voltage
 NUM, position NUM, mode INT4, $end
4- INSERT INTO pd_mapping_event VALUES ('1', 'it''s', 2.25, 3, 4, FALSE, NULL, 7.25, 8, FALSE, TRUE, '$time')
4- SELECT * FROM pd_mapping_event => 1|it's|2.25|3|4|0|NULL|7.25|8|0|1|$time

4-4 CREATE TABLE "pd_iec_overview" (id TEXT, report_id TEXT, phase INT4, groundnoise NUM, frequency NUM, pdivvoltage
 NUM, pdevvoltage NUM, pdivmaxcharge NUM, pdmaxcharges TEXT, pdmedcharges TEXT, $end
4-4 INSERT INTO pd_iec_overview VALUES ('1', 'it''s', 2, NULL, 4.25, 5.25, NULL, 7.25, 'v8', 'v9', TRUE, FALSE,
 '$time')
4-4 SELECT * FROM pd_iec_overview => 1|it's|2|NULL|0|4.25|5.25|NULL|7.25|v8|v9|1|0|$time

5- CREATE TABLE "pd_iec_overview" (id TEXT, report_id TEXT, phase INT4, groundnoise NUM, sensitivity_level NUM,
 frequency NUM, pdivvoltage NUM, pdevvoltage NUM, pdivmaxcharge NUM, pdmaxcharges TEXT, pdmedcharges TEXT, $end
5- INSERT INTO pd_iec_overview VALUES ('1', 'it''s', 2, NULL, 4.25, 5.25, NULL, 7.25, 8.25, 'v9', 'v10', FALSE, TRUE,
 '$time')
5- SELECT * FROM pd_iec_overview => 1|it's|2|NULL|4.25|5.25|NULL|7.25|8.25|v9|v10|0|1|$time

4-6 CREATE TABLE "pd_summary" (id TEXT, report_id TEXT, pdiv BOOL, pdev BOOL, groundnoise BOOL, data BOOL, vwd BOOL,
 dac_pos BOOL, dac_neg BOOL, vlf_cr BOOL, vlf_sin BOOL, $end
4-6 INSERT INTO pd_summary VALUES ('1', 'it''s', TRUE, FALSE, TRUE, FALSE, TRUE, FALSE, TRUE, FALSE, TRUE, FALSE,
 TRUE, '$time')
4-6 SELECT * FROM pd_summary => 1|it's|1|0|1|0|1|0|1|0|1|NULL|0|1|$time

7- CREATE TABLE "pd_summary" (id TEXT, report_id TEXT, pdiv BOOL, pdev BOOL, groundnoise BOOL, data BOOL, vwd BOOL,
 dac_pos BOOL, dac_neg BOOL, vlf_cr BOOL, vlf_sin BOOL, max_applied_voltage NUM, $end
7- INSERT INTO pd_summary VALUES ('1', 'it''s', TRUE, FALSE, TRUE, FALSE, TRUE, FALSE, TRUE, FALSE, TRUE, 11.25,
 TRUE, FALSE, '$time')
7- SELECT * FROM pd_summary => 1|it's|1|0|1|0|1|0|1|0|1|11.25|1|0|$time

6- CREATE TABLE "pd_task_info" (id TEXT, report_id TEXT, pd_version TEXT, system_type TEXT, serial_number TEXT,
 calibration_date TEXT, $end
6- INSERT INTO pd_task_info VALUES ('1', 'it''s', 'v2', 'v3', 'v4', 'v5', TRUE, FALSE, '$time')
6- SELECT * FROM pd_task_info => 1|it's|v2|v3|v4|v5|1|0|$time

8- CREATE TABLE "pd_lbdiagram" (id TEXT, report_id TEXT, phase1visible BOOL, phase2visible BOOL, phase3visible BOOL,
 filterclass INT4, filtervoltagemin NUM, filtervoltagemax NUM, $end
8- INSERT INTO pd_lbdiagram VALUES ('1', 'it''s', TRUE, FALSE, TRUE, 5, NULL, 7.25, TRUE, FALSE, '$time')
8- SELECT * FROM pd_lbdiagram => 1|it's|1|0|1|5|NULL|7.25|1|0|$time
