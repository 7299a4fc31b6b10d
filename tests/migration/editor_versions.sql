-- Databases of the cable network as they are in the field at each version, written down by hand, not made by the steps.
--
-- "current" is the version that a migration reaches.
-- A statement begins with the versions it is for, first-last, or first- for all later ones; -1 is an empty database, 0 one
-- with settings and cable tables from before there were versions. "with" and "without" limit it to databases with or
-- without a cable book. Lines that begin with a blank go on with the statement above. What follows "=>" are the rows that
-- the select has once a database that began at one of the versions is migrated: "|" between columns and "; " between rows.
--
-- A table has a sequence for its ids, where the backend has sequences, unless its name is quoted.
-- INT4, INT8, BOOL, NUM, TIME, DATE and BYTES stand for the backend's types, $names for longer texts.
-- The clock of America/St_Johns leaves 2:30 on 2020-03-08 out.

current 9

-1- with CREATE TABLE measures (id INT8 PRIMARY KEY, modeid INT4, measure_date TIME)
-1- with INSERT INTO measures VALUES (7, 3, '2021-05-05 05:05:05.000')
-1- with CREATE TABLE pd_task (id TEXT PRIMARY KEY, creationdate TIME)
-1- with INSERT INTO pd_task VALUES ('t1', '2021-06-06 06:06:06.000')

0-0 CREATE TABLE "features" ($features
1- CREATE TABLE features ($features
0- CREATE TABLE feature_defaults (featureid INT8 REFERENCES features(id), value VARCHAR(44), changed_at TIME,
 PRIMARY KEY (featureid))
0- INSERT INTO features VALUES (101, 'Other', 'I', '', FALSE, FALSE, FALSE)
1- INSERT INTO features VALUES (102, 'CablesVersion', 'I', '', FALSE, FALSE, FALSE)
1- INSERT INTO feature_defaults VALUES (102, '$version', '2020-01-02 03:04:05.678')
0- SELECT name FROM features WHERE name <> 'PdVersion' ORDER BY id => Other; CablesVersion

-- Work tables that somebody left behind.
0- CREATE TABLE ce_station_tmp (id INT4)
0- CREATE TABLE ce_segment_tmp (id INT4)
0- CREATE TABLE ce_cable_tmp (id INT4)
0- INSERT INTO ce_cable_tmp VALUES (5)
0- SELECT id FROM ce_cable_tmp => 5

0-0 CREATE TABLE "CE_STATION" (id TEXT)
0-0 INSERT INTO "CE_STATION" VALUES ('old')
0-0 CREATE TABLE "ce_isolation" (id TEXT)
0-0 CREATE TABLE "ce_cables" (id INT4 PRIMARY KEY)
0-0 CREATE TABLE other (cable INT4 REFERENCES ce_cables(id))
0-0 CREATE TABLE ce_cable (id TEXT PRIMARY KEY, name TEXT)
0-0 INSERT INTO ce_cable VALUES ('c1', 'old')
0-0 SELECT (SELECT count(*) FROM ce_station), (SELECT count(*) FROM ce_cable) => 0|0

1-1 CREATE TABLE ce_station (id TEXT, name TEXT, city TEXT, point TEXT, $end
2- CREATE TABLE ce_station (id TEXT, name TEXT, city TEXT, point TEXT, snap BOOL, deleted BOOL, timestamp TIME,
 description TEXT, image BYTES, PRIMARY KEY (id))
1- INSERT INTO ce_station (id, name, point, snap, deleted, timestamp)
 VALUES ('s1', 'Nord "A" O''Brien', 'p1', FALSE, TRUE, '2020-03-08 02:30:00.123')
2- UPDATE ce_station SET description = 'red', image = $image
1-1 SELECT * FROM ce_station => s1|Nord "A" O'Brien|NULL|p1|0|1|2020-03-08 02:30:00.123|NULL|NULL
2- SELECT * FROM ce_station => s1|Nord "A" O'Brien|NULL|p1|0|1|2020-03-08 02:30:00.123|red|hex:01ff00

1- CREATE TABLE ce_point (id TEXT, indexnumber INT8, latitude NUM, longitude NUM, $end
1- INSERT INTO ce_point VALUES ('p1', 5000000000, 47.25, -52.75, NULL, NULL, NULL)
1- SELECT * FROM ce_point => p1|5000000000|47.25|-52.75|NULL|NULL|NULL
1- CREATE TABLE ce_route (id TEXT, cable TEXT, points TEXT, $end
1- CREATE TABLE ce_phase (id TEXT, indexnumber INT4, cable TEXT, $end
1- CREATE TABLE ce_owner (id TEXT, name TEXT, $end
1- CREATE TABLE ce_termination (id TEXT, name TEXT, $end
1- CREATE TABLE ce_switchgear (id TEXT, name TEXT, $end
1- INSERT INTO ce_switchgear (id, name) VALUES ('g1', 'both ends'), ('g2', 'one end'),
 ('{016831d8-0d3a-4e30-b568-ecb848ec2a01}', 'unused')
1-8 INSERT INTO ce_switchgear (id, name) VALUES ('g3', 'unused')
1- SELECT id FROM ce_switchgear ORDER BY name => g1; g2; {016831d8-0d3a-4e30-b568-ecb848ec2a01}
1- CREATE TABLE ce_segmenttype (id TEXT, name TEXT, isjoint BOOL, $end
1- INSERT INTO ce_segmenttype VALUES ('$section', 'cable', FALSE, FALSE, FALSE, NULL),
 ('j1', 'joint', TRUE, FALSE, FALSE, NULL)
1- CREATE TABLE ce_insulation (id TEXT, name TEXT, velocity NUM, $end
1-3 INSERT INTO ce_insulation (id, name, velocity) VALUES ('i1', 'PE', 170.5), ('i2', 'Mixed', NULL)
1-3 SELECT (SELECT count(*) FROM ce_insulation), (SELECT count(*) FROM ce_segment_detail) => 0|0

1-1 CREATE TABLE ce_segment (id TEXT, name TEXT, velocity INT4, insulation TEXT, phase TEXT, type TEXT, point TEXT,
 snap BOOL, deleted BOOL, length NUM, indexnumber INT4, timestamp TIME, PRIMARY KEY (id))
1-1 INSERT INTO ce_segment VALUES
 ('x1', 'S "1"', 170, 'i1', 'h1', '$section', 'p1', FALSE, TRUE, 12.5, 0, '2020-03-08 02:30:00.123'),
 ('x2', NULL, NULL, 'i2', NULL, '$section', NULL, NULL, NULL, NULL, NULL, NULL),
 ('x3', 'lost', 160, 'i9', 'h1', '$section', NULL, FALSE, FALSE, 1, 2, NULL),
 ('x4', 'joint', 0, NULL, 'h1', 'j1', NULL, FALSE, FALSE, 0, 1, NULL)
2-2 CREATE TABLE ce_segment (id TEXT, name TEXT, indexnumber INT4, length NUM, phase TEXT, point TEXT, detail TEXT, $end
3- CREATE TABLE ce_segment (id TEXT, name TEXT, indexnumber INT4, length NUM, phase TEXT, point TEXT, detail TEXT,
 installationdate DATE, $end
2- INSERT INTO ce_segment (id, name, indexnumber, length, phase, point, detail, snap, deleted, timestamp) VALUES
 ('x1', 'S "1"', 0, 12.5, 'h1', 'p1', 'd1', FALSE, TRUE, '2020-03-08 02:30:00.123'),
 ('x2', NULL, NULL, NULL, NULL, NULL, 'd2', NULL, NULL, NULL),
 ('x3', 'lost', 2, 1, 'h1', NULL, 'd3', FALSE, FALSE, NULL), ('x4', 'joint', 1, 0, 'h1', NULL, 'd4', FALSE, FALSE, NULL)
3- UPDATE ce_segment SET installationdate = '1965-01-31'
1-2 SELECT * FROM ce_segment ORDER BY id => x1|S "1"|0|12.5|h1|p1|$pe|NULL|0|1|2020-03-08 02:30:00.123;
 x2|NULL|NULL|NULL|NULL|NULL|$mixed|NULL|NULL|NULL|NULL; x3|lost|2|1|h1|NULL|$unknown|NULL|0|0|NULL;
 x4|joint|1|0|h1|NULL|$joints|NULL|0|0|NULL
3-3 SELECT id, detail, installationdate FROM ce_segment ORDER BY id =>
 x1|$pe|1965-01-31; x2|$mixed|1965-01-31; x3|$unknown|1965-01-31; x4|$joints|1965-01-31
2- CREATE TABLE ce_segment_detail (id TEXT, name TEXT, velocity NUM, insulation TEXT, type TEXT, favorite BOOL, $end
2-3 INSERT INTO ce_segment_detail (id, velocity, insulation, type) VALUES ('d1', 170, 'i1', '$section'),
 ('d2', 170, 'i2', '$section'), ('d3', 170, 'i9', '$section'), ('d4', 170, NULL, 'j1')
4- UPDATE ce_segment SET detail = '$pe'
4- INSERT INTO ce_segment_detail (id, type) VALUES ('$pe', '$section'), ('$unknown', '$section'), ('joint', 'j1')
4-7 INSERT INTO ce_segment_detail (id, type) VALUES ('unused', '$section')
4- SELECT id FROM ce_segment_detail ORDER BY id DESC => $pe; $unknown; joint

1-1 CREATE TABLE ce_cable ($cable, snap BOOL, deleted BOOL, cablestate INT4, comment TEXT, length INT4, timestamp TIME,
 PRIMARY KEY (id))
2-6 CREATE TABLE ce_cable ($cable, type INT4, snap BOOL, deleted BOOL, cablestate INT4, comment TEXT, length NUM,
 timestamp TIME, PRIMARY KEY (id))
7- CREATE TABLE ce_cable ($cable, type INT4, snap BOOL, deleted BOOL, cablestate INT4, comment TEXT, length NUM,
 timestamp TIME, importance INT4, PRIMARY KEY (id))
1- INSERT INTO ce_cable (id, number, voltage, installationdate, diagnosticstate, city, stationa, stationb, terminationa,
 terminationb, switchgeara, switchgearb, route, owner, snap, deleted, cablestate, comment, length, timestamp)
 VALUES ('c1', 'N "1"', 10, '1965-01-31', 2, '', 's1', 's2', 't1', 't2', 'g1', 'g1', 'r1', 'o1', TRUE, FALSE, 1, 'it''s',
 1234, '2020-03-08 02:30:00.123')
1- INSERT INTO ce_cable (id, voltage, switchgeara) VALUES ('c2', 0.4, 'g2')
2- UPDATE ce_cable SET type = 3, voltage = 10000, length = 1234.5 WHERE id = 'c1'
7- UPDATE ce_cable SET importance = 4 WHERE id = 'c1'
1-1 SELECT * FROM ce_cable ORDER BY id =>
 c1|N "1"|10000|1965-01-31|2||s1|s2|t1|t2|g1|g1|r1|o1|0|1|0|1|it's|1234|2020-03-08 02:30:00.123|NULL;
 c2|NULL|400|NULL|NULL|NULL|NULL|NULL|NULL|NULL|g2|NULL|NULL|NULL|0|NULL|NULL|NULL|NULL|NULL|NULL|NULL
2-6 SELECT * FROM ce_cable ORDER BY id =>
 c1|N "1"|10000|1965-01-31|2||s1|s2|t1|t2|g1|g1|r1|o1|3|1|0|1|it's|1234.5|2020-03-08 02:30:00.123|NULL;
 c2|NULL|0.4|NULL|NULL|NULL|NULL|NULL|NULL|NULL|g2|NULL|NULL|NULL|NULL|NULL|NULL|NULL|NULL|NULL|NULL|NULL
7- SELECT importance, length FROM ce_cable ORDER BY id => 4|1234.5; NULL|NULL

0-0 CREATE TABLE evaluation ($evaluation
5- CREATE TABLE evaluation ($evaluation
5-5 INSERT INTO evaluation VALUES (1, 7, NULL, 'c1', 'it''s', '{"a": 1}', -1, 2, 3, '2021-01-01 01:01:01.000'),
 (2, NULL, NULL, 'c1', NULL, NULL, NULL, NULL, NULL, '2021-02-02 02:02:02.000'),
 (3, NULL, 't1', NULL, NULL, NULL, NULL, NULL, NULL, NULL), (4, NULL, 'gone', NULL, NULL, NULL, NULL, NULL, NULL, NULL)
-1- with SELECT count(*) FROM evaluation => 0
-- What only a cable book would explain is kept where it is.
5-5 without SELECT id FROM evaluation ORDER BY id => 1; 2; 3; 4
6- CREATE TABLE qor_rating (id TEXT, mid INT8, tid TEXT, cid TEXT, comment TEXT, evaluation TEXT, automatic INT4,
 oldcable INT4, eventselectionmodel INT4, modeid INT4, measuretime TIME, snap BOOL, deleted BOOL,
 timestamp TIME DEFAULT CURRENT_TIMESTAMP, PRIMARY KEY (id))
6- INSERT INTO qor_rating (id, cid) VALUES ('12', 'c1')
6- SELECT $ratings => 12|NULL|NULL|c1|NULL|NULL|NULL|NULL|NULL|NULL|NULL
5-5 with SELECT $ratings =>
 {514f5200-1d00-8000-0000-000000000001}|7|NULL|c1|it's|{"a": 1}|-1|2|3|3|2021-05-05 05:05:05.000;
 {514f5200-1d00-8000-0000-000000000002}|NULL|NULL|c1|NULL|NULL|NULL|NULL|NULL|NULL|2021-02-02 02:02:02.000;
 {514f5200-1d00-8000-0000-000000000003}|NULL|t1|NULL|NULL|NULL|NULL|NULL|NULL|NULL|2021-06-06 06:06:06.000
5-5 without SELECT $ratings =>
 {514f5200-1d00-8000-0000-000000000001}|7|NULL|c1|it's|{"a": 1}|-1|2|3|NULL|2021-01-01 01:01:01.000;
 {514f5200-1d00-8000-0000-000000000002}|NULL|NULL|c1|NULL|NULL|NULL|NULL|NULL|NULL|2021-02-02 02:02:02.000
7- CREATE TABLE cablebook_measures (id INT8 $measureid, cableid TEXT, importdate TIME, deletedate TIME, snap BOOL,
 lastedit TIME, stationid TEXT, PRIMARY KEY (id))
