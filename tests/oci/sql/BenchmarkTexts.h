// SPDX-License-Identifier: Apache-2.0
// Every SQL text that the plug-in and the driver send, as they send it, and what the server is to be given.
// They stand in an order in which all of them run on an empty schema.
#pragma once

#include <string_view>

namespace ocimaria::sql {

struct BenchmarkText {
  std::string_view oracle;
  std::string_view server;  // empty: as it stands
};

inline constexpr BenchmarkText kBenchmarkTexts[] = {
    // The properties table.
    {"CREATE TABLE LK_REP_PROPERTIES ( PROP_NAME VARCHAR2(50) NOT NULL, PROP_VALUE VARCHAR2(255) NOT NULL)",
     "CREATE TABLE LK_REP_PROPERTIES ( PROP_NAME varchar(50) COMMENT 'ora:VARCHAR2(50)' NOT NULL, PROP_VALUE "
     "varchar(255) COMMENT 'ora:VARCHAR2(255)' NOT NULL)"},
    {"BEGIN INSERT INTO LK_REP_PROPERTIES (PROP_NAME, PROP_VALUE) VALUES('Number Of Tables', '4'); "
     "INSERT INTO LK_REP_PROPERTIES (PROP_NAME, PROP_VALUE) VALUES('Minimum Column', '5'); "
     "INSERT INTO LK_REP_PROPERTIES (PROP_NAME, PROP_VALUE) VALUES('Maximum Column', '12'); "
     "INSERT INTO LK_REP_PROPERTIES (PROP_NAME, PROP_VALUE) VALUES('Distribution Mode', '2'); "
     "INSERT INTO LK_REP_PROPERTIES (PROP_NAME, PROP_VALUE) VALUES('Scale', '1'); "
     "INSERT INTO LK_REP_PROPERTIES (PROP_NAME, PROP_VALUE) VALUES('Column Structure', 'NUMBER(10,2)@20@0'); "
     " END;",
     ""},
    {"BEGIN UPDATE LK_REP_PROPERTIES SET PROP_VALUE = '5' WHERE PROP_NAME = 'Number Of Tables';  UPDATE "
     "LK_REP_PROPERTIES SET PROP_VALUE = '2' WHERE PROP_NAME = 'Scale'; END;",
     ""},

    // A generated table.
    {"CREATE TABLE LK_REP_TABLE1 (ID NUMBER NOT NULL,Column1 NUMBER(10,2) NOT NULL,Column2 DATE ,Column3 "
     "VARCHAR2(20) "
     "NOT NULL,Column4 TIMESTAMP ,Column5 CHAR(10) , PRIMARY KEY(ID))",
     "CREATE TABLE LK_REP_TABLE1 (ID double COMMENT 'ora:NUMBER' NOT NULL,Column1 decimal(10,2) COMMENT "
     "'ora:NUMBER(10,2)' NOT NULL,Column2 datetime COMMENT 'ora:DATE' ,Column3 varchar(20) COMMENT "
     "'ora:VARCHAR2(20)' "
     "NOT NULL,Column4 datetime(6) COMMENT 'ora:TIMESTAMP(6)' ,Column5 char(10) COLLATE utf8mb4_bin COMMENT "
     "'ora:CHAR(10)' , PRIMARY KEY(ID))"},
    {"SELECT * FROM LK_REP_TABLE1", ""},

    // The load and its backups.
    {"INSERT INTO LK_REP_TABLE1 (ID, COLUMN1, COLUMN2, COLUMN3, COLUMN4, COLUMN5) VALUES (:ID, :COLUMN1, "
     "TO_DATE(:COLUMN2, 'YYYY/MM/DD HH24:MI:SS'), :COLUMN3, TO_DATE(:COLUMN4, 'YYYY/MM/DD HH24:MI:SS'), "
     ":COLUMN5)",
     "INSERT INTO LK_REP_TABLE1 (ID, COLUMN1, COLUMN2, COLUMN3, COLUMN4, COLUMN5) VALUES (?, ?, ?, ?, ?, ?)"},
    {"SELECT COUNT(*) FROM USER_TABLES WHERE TABLE_NAME = 'LK_REP_TABLE1_BAK'",
     "SELECT COUNT(*) FROM (SELECT CAST(UPPER(t.table_name) AS CHAR(64)) TABLE_NAME, 'VALID' STATUS, "
     "t.table_rows "
     "NUM_ROWS FROM information_schema.tables t WHERE t.table_schema = DATABASE() AND t.table_type = 'BASE "
     "TABLE') "
     "\"USER_TABLES\" WHERE TABLE_NAME = 'LK_REP_TABLE1_BAK'"},
    {"SELECT C.COLUMN_NAME FROM USER_CONSTRAINTS K, USER_CONS_COLUMNS C WHERE K.CONSTRAINT_TYPE = 'P' AND "
     "K.TABLE_NAME "
     "= 'LK_REP_TABLE1' AND C.CONSTRAINT_NAME = K.CONSTRAINT_NAME AND C.TABLE_NAME = K.TABLE_NAME ORDER BY "
     "C.POSITION",
     "SELECT C.COLUMN_NAME FROM (SELECT CAST(UPPER(k.constraint_schema) AS CHAR(64)) OWNER, CAST(UPPER(CASE "
     "WHEN "
     "k.constraint_name = 'PRIMARY' THEN CONCAT('PK_', k.table_name) ELSE k.constraint_name END) AS "
     "CHAR(64)) "
     "CONSTRAINT_NAME, CASE k.constraint_type WHEN 'PRIMARY KEY' THEN 'P' WHEN 'UNIQUE' THEN 'U' WHEN "
     "'FOREIGN KEY' "
     "THEN 'R' ELSE 'C' END CONSTRAINT_TYPE, CAST(UPPER(k.table_name) AS CHAR(64)) TABLE_NAME, 'ENABLED' "
     "STATUS FROM "
     "information_schema.table_constraints k WHERE k.constraint_schema = DATABASE() AND k.constraint_name "
     "NOT LIKE "
     "'ora$len$%') K, (SELECT CAST(UPPER(k.constraint_schema) AS CHAR(64)) OWNER, CAST(UPPER(CASE WHEN "
     "k.constraint_name = 'PRIMARY' THEN CONCAT('PK_', k.table_name) ELSE k.constraint_name END) AS "
     "CHAR(64)) "
     "CONSTRAINT_NAME, CAST(UPPER(k.table_name) AS CHAR(64)) TABLE_NAME, CAST(UPPER(k.column_name) AS "
     "CHAR(64)) "
     "COLUMN_NAME, k.ordinal_position POSITION FROM information_schema.key_column_usage k WHERE "
     "k.constraint_schema = "
     "DATABASE()) C WHERE K.CONSTRAINT_TYPE = 'P' AND K.TABLE_NAME = 'LK_REP_TABLE1' AND C.CONSTRAINT_NAME = "
     "K.CONSTRAINT_NAME AND C.TABLE_NAME = K.TABLE_NAME ORDER BY C.POSITION"},
    {"CREATE TABLE LK_REP_TABLE1_BAK AS SELECT * FROM LK_REP_TABLE1 WHERE 1=0", ""},
    {"ALTER TABLE LK_REP_TABLE1_BAK ADD PRIMARY KEY (\"ID\")", ""},
    {"DROP TABLE LK_REP_TABLE1_BAK", ""},
    {"CREATE TABLE LK_REP_TABLE1_BAK AS SELECT * FROM LK_REP_TABLE1", ""},
    {"DROP TABLE LK_REP_TABLE1", ""},
    {"ALTER TABLE LK_REP_TABLE1_BAK RENAME TO LK_REP_TABLE1", ""},
    {"ALTER TABLE LK_REP_TABLE1 ADD PRIMARY KEY (\"ID\")", ""},

    // The sequence.
    {"CREATE SEQUENCE LK_REP_ID_SEQ START WITH 1001 CACHE 100",
     "CREATE SEQUENCE LK_REP_ID_SEQ INCREMENT BY 0 START WITH 1001 CACHE 100"},
    {"SELECT LK_REP_ID_SEQ.NEXTVAL FROM DUAL", "SELECT LK_REP_ID_SEQ.NEXTVAL \"NEXTVAL\" FROM DUAL"},
    {"DECLARE v_count number; BEGIN SELECT COUNT(*) INTO v_count FROM USER_SEQUENCES WHERE SEQUENCE_NAME = "
     "'LK_REP_ID_SEQ';  IF v_count > 0 THEN \t\tEXECUTE IMMEDIATE 'DROP SEQUENCE LK_REP_ID_SEQ';  END IF;  "
     "EXECUTE "
     "IMMEDIATE 'CREATE SEQUENCE LK_REP_ID_SEQ START WITH 2001 CACHE 100'; END;",
     "DECLARE v_count number; BEGIN SELECT COUNT(*) INTO v_count FROM (SELECT CAST(UPPER(t.table_name) AS "
     "CHAR(64)) "
     "SEQUENCE_NAME FROM information_schema.tables t WHERE t.table_schema = DATABASE() AND t.table_type = "
     "'SEQUENCE') "
     "\"USER_SEQUENCES\" WHERE SEQUENCE_NAME = 'LK_REP_ID_SEQ';  IF v_count > 0 THEN \t\tEXECUTE IMMEDIATE "
     "'DROP "
     "SEQUENCE LK_REP_ID_SEQ';  END IF;  EXECUTE IMMEDIATE 'CREATE SEQUENCE LK_REP_ID_SEQ INCREMENT BY 0 "
     "START WITH 2001 CACHE 100'; END;"},

    // The workload.
    {"update LK_REP_TABLE1 set ID=42,COLUMN1=12.500000,COLUMN2=TO_DATE('1987/03/09 04:05:06', 'YYYY-MM-DD "
     "HH24:MI:SS'),COLUMN3='AbCdE',COLUMN4=TO_DATE('2011/12/31 23:59:58', 'YYYY-MM-DD "
     "HH24:MI:SS'),COLUMN5='x' where "
     "id = 42",
     "update LK_REP_TABLE1 set ID=42,COLUMN1=12.500000,COLUMN2=TIMESTAMP'1987-03-09 "
     "04:05:06',COLUMN3='AbCdE',COLUMN4=TIMESTAMP'2011-12-31 23:59:58',COLUMN5='x' where id = 42"},
    {"delete from LK_REP_TABLE1 where id = 42", ""},

    // The refresh.
    {"SELECT COUNT(*) FROM LK_REP_TABLE1", ""},
    {"DELETE FROM LK_REP_TABLE1 WHERE ID IN (SELECT ID FROM LK_REP_TABLE1 WHERE ID > 1000 AND ROWNUM <=500)",
     ""},
    {"TRUNCATE TABLE LK_REP_TABLE1", ""},

    // All gone.
    {"DROP TABLE LK_REP_TABLE1", ""},
    {"DROP SEQUENCE LK_REP_ID_SEQ", ""},
    {"DROP TABLE LK_REP_PROPERTIES", ""},
};

}  // namespace ocimaria::sql
