#!/usr/bin/env python3
"""Makes settings files that attack the program, which must reject each: hostile_files.py GOOD_FILE FOLDER
Prints one line for each file: NAME <tab> text of the message that the program must show."""

import os
import pathlib
import sqlite3
import struct
import sys

GOOD = pathlib.Path(sys.argv[1])
FOLDER = pathlib.Path(sys.argv[2])
PAGE = 4096


def tell(name, message):
    print(f"{name}\t{message}")


def raw(name, content, message):
    (FOLDER / name).write_bytes(content)
    tell(name, message)


def sql(name, script, message):
    path = FOLDER / name
    path.write_bytes(GOOD.read_bytes())
    database = sqlite3.connect(path)
    database.executescript(script)
    database.commit()
    database.close()
    for rest in FOLDER.glob(name + "-*"):
        rest.unlink()
    tell(name, message)


def patched(name, changes, message):
    content = bytearray(GOOD.read_bytes())
    for offset, new in changes:
        content[offset : offset + len(new)] = new
    raw(name, bytes(content), message)


def root_page(table):
    database = sqlite3.connect(GOOD)
    (page,) = database.execute("SELECT rootpage FROM sqlite_schema WHERE name = ?", [table]).fetchone()
    database.close()
    return (page - 1) * PAGE


good = GOOD.read_bytes()
settings = root_page("Settings")

# Not a database, or only a part of one.
raw("empty.ztv", b"", "there is no table Settings")
raw("text.ztv", b"Zentrova settings\n" * 500, "file is not a database")
raw("zeros.ztv", bytes(20000), "file is not a database")
raw("noise.ztv", bytes((i * 7919 >> 3) & 0xFF for i in range(30000)), "file is not a database")
raw("header-alone.ztv", good[:100], "Settings")
raw("cut-in-the-schema.ztv", good[:2000], "Settings")
raw("cut-behind-the-schema.ztv", good[:PAGE], "Settings")
raw("cut-in-the-table.ztv", good[: settings + 100], "Settings")

# Tables and columns.
sql("no-settings.ztv", "DROP TABLE Settings", "there is no table Settings")
sql("no-properties.ztv", "DROP TABLE Properties", "there is no table Properties")
sql("no-value.ztv", "ALTER TABLE Settings RENAME COLUMN Value TO Amount", "no such column: Value")
sql("no-notes.ztv", "ALTER TABLE Properties RENAME COLUMN Notes TO Remarks", "no such column: Notes")
sql("view.ztv", "ALTER TABLE Settings RENAME TO S; CREATE VIEW Settings AS SELECT * FROM S", "Settings isn't a plain")
sql(
    "endless-view.ztv",
    "DROP TABLE Settings; CREATE VIEW Settings AS WITH RECURSIVE n(Value) AS "
    "(SELECT 1 UNION ALL SELECT Value + 1 FROM n) SELECT Value FROM n",
    "Settings isn't a plain",
)
sql("view-of-properties.ztv", "DROP TABLE Properties; CREATE VIEW Properties AS SELECT 'x' AS Notes", "isn't a plain")
sql(
    "trigger-in-place-of-a-table.ztv",
    "CREATE TABLE Bait (x); CREATE TRIGGER Settings2 AFTER INSERT ON Bait BEGIN DELETE FROM Bait; END;"
    "DROP TABLE Settings; PRAGMA writable_schema = 1;"
    "UPDATE sqlite_schema SET name = 'Settings' WHERE type = 'trigger'",
    "malformed database schema",
)
sql(
    "virtual.ztv",
    "DROP TABLE Settings; CREATE VIRTUAL TABLE Settings USING fts5(Tag, Name, Value)",
    "Settings isn't a plain table",
)
sql(
    "generated.ztv",
    "ALTER TABLE Settings DROP COLUMN Value; ALTER TABLE Settings ADD COLUMN Value INTEGER AS (length(zeroblob(999999)))",
    "column Value of table Settings isn't a plain one",
)
sql(
    "without-row-ids.ztv",
    "DROP TABLE Settings; CREATE TABLE Settings (Tag INTEGER PRIMARY KEY, Value) WITHOUT ROWID",
    "Settings isn't a plain table",
)
sql("index-that-lies.ztv", "CREATE TABLE T(x); PRAGMA writable_schema = 1; UPDATE sqlite_schema SET rootpage = 1 "
    "WHERE name = 'Settings'", "Settings")

# Values.
sql("text-for-a-number.ztv", "UPDATE Settings SET Value = 'many' WHERE rowid = 40", "record 39: column Value holds no")
sql("null-for-a-number.ztv", "UPDATE Settings SET Value = NULL WHERE rowid = 40", "record 39: column Value holds no")
sql("fraction.ztv", "UPDATE Settings SET Value = 12.5 WHERE rowid = 40", "record 39: column Value holds no whole")
sql("bytes-for-a-number.ztv", "UPDATE Settings SET Value = x'00ff' WHERE rowid = 40", "column Value holds no whole")
sql("giant-number.ztv", "UPDATE Settings SET Value = 9223372036854775807 WHERE rowid = 40", "9223372036854775807")
sql("beyond-32-bits.ztv", "UPDATE Settings SET Value = -2147483649 WHERE rowid = 40", "holds -2147483649")
sql("count-beyond-16-bits.ztv", "UPDATE Settings SET Value = 32768 WHERE rowid = 13", "record 12: column Value holds")
sql("count-is-a-text.ztv", "UPDATE Settings SET Value = '96 or so' WHERE rowid = 13", "record 12: column Value holds")
sql("count-that-lies.ztv", "DELETE FROM Settings WHERE rowid > 50", "has 50 records, fewer than its count 96")
sql("ten-records.ztv", "DELETE FROM Settings WHERE rowid > 10", "has 10 records, and the count")
sql("no-records.ztv", "DELETE FROM Settings", "has 0 records, and the count")
sql("no-notes-record.ztv", "DELETE FROM Properties", "table Properties has no record")
sql("null-notes.ztv", "UPDATE Properties SET Notes = NULL", "column Notes holds no text")
sql("notes-of-bytes.ztv", "UPDATE Properties SET Notes = zeroblob(50)", "column Notes holds no text")
sql("giant-value.ztv", "UPDATE Settings SET Value = zeroblob(3000000) WHERE rowid = 40", "string or blob too big")

# The file's own structure.
for number, size in enumerate([0, 2, 100, 256, 511, 513, 4097, 65535]):
    patched(f"page-size-{number}.ztv", [(16, struct.pack(">H", size))], "file is not a database")
patched("root-beyond-the-end.ztv", [(28, struct.pack(">I", 2)), (settings, b"\x05")], "Settings")
patched("table-that-is-an-index.ztv", [(settings, b"\x0a")], "malformed")
patched("cells-beyond-the-page.ztv", [(settings + 3, b"\xff\xff")], "malformed")
patched("cells-into-nowhere.ztv", [(settings + 8, b"\xff\xff" * 96)], "malformed")
# An inner page whose only child is itself: walking the tree would never end.
patched(
    "page-within-itself.ztv",
    [(settings, b"\x05\0\0\0\0\0\0\0" + struct.pack(">I", settings // PAGE + 1))],
    "malformed",
)
patched("schema-within-itself.ztv", [(100, b"\x05\0\0\0\0\0\0\0" + struct.pack(">I", 1))], "there are too many tables")

# Beside the file.
database = sqlite3.connect(FOLDER / "logged.ztv")
database.executescript("PRAGMA journal_mode = WAL; CREATE TABLE T (x); INSERT INTO T VALUES (1)")
database.close()
tell("logged.ztv", "there is no table Settings")
with open(FOLDER / "giant.ztv", "wb") as giant:
    giant.write(good)
    giant.truncate(1 << 34)  # a sparse file: it occupies no disk space
tell("giant.ztv", "the file is too large")
tables = sqlite3.connect(FOLDER / "many-tables.ztv")
tables.executescript("BEGIN;" + "".join(f"CREATE TABLE T{n} (x);" for n in range(1500)) + "COMMIT")
tables.close()
tell("many-tables.ztv", "there are too many tables")
for size in [512, 1024, 8192, 32768, 65536]:
    # With the large page sizes, all descriptions fit in one page.
    crowd = sqlite3.connect(FOLDER / f"crowd-on-pages-of-{size}.ztv")
    crowd.execute(f"PRAGMA page_size = {size}")
    crowd.executescript("BEGIN;" + "".join(f"CREATE TABLE T{n} (x);" for n in range(200)) + "COMMIT")
    crowd.close()
    tell(f"crowd-on-pages-of-{size}.ztv", "there are too many tables")
def schema(name, rows, message):
    """Writes rows that no SQL statement would create directly into the schema of a good file."""
    path = FOLDER / name
    path.write_bytes(good)
    database = sqlite3.connect(path)
    page = settings // PAGE + 1
    database.execute("PRAGMA writable_schema = 1")
    database.executemany(
        "INSERT INTO sqlite_schema VALUES (?, ?, ?, ?, ?)",
        [(kind, title, title, page if kind == "table" else 0, text) for kind, title, text in rows],
    )
    database.commit()
    database.close()
    tell(name, message)


# The engine parses each in time quadratic in its length, before any statement runs.
schema(
    "crowd-of-tables.ztv",
    [("view", "v", "CREATE VIEW v AS SELECT 1 FROM nowhere")]
    + [("table", f"t{n}", f"CREATE TABLE t{n}(a)") for n in range(15000)],
    "there are too many tables",
)
columns = [f"c{n}" for n in range(300)]
pairs = [f"UNIQUE({a},{b})" for a in columns for b in columns if a != b][:30000]
schema(
    "crowd-of-constraints.ztv",
    [("table", "x", f"CREATE TABLE x({','.join(columns + pairs)})")],
    "table Settings:",
)
os.mkfifo(FOLDER / "pipe.ztv")
tell("pipe.ztv", "this isn't a file")
(FOLDER / "folder.ztv").mkdir()
tell("folder.ztv", "this isn't a file")
(FOLDER / "loop.ztv").symlink_to("loop.ztv")
tell("loop.ztv", "there is no such file")
