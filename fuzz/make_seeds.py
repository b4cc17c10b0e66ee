#!/usr/bin/env python3
"""Makes all seeds: make_seeds.py PRESETS_FILE. The head of each target describes its input."""

import pathlib
import shutil
import sqlite3
import struct
import sys
import tempfile

PRESETS = pathlib.Path(sys.argv[1])
SEEDS = pathlib.Path(__file__).resolve().parent / "seeds"
shutil.rmtree(SEEDS, ignore_errors=True)


def seed(target, name, content):
    folder = SEEDS / target
    folder.mkdir(parents=True, exist_ok=True)
    (folder / name).write_bytes(content.encode() if isinstance(content, str) else content)


# The judgement of Modbus replies: slave - 1, function, address, quantity or count and words, noise, exception code, words,
# pieces.
READ, SINGLE, SEVERAL = 0, 1, 2
NOISE, GOOD_CRC, REPLY, EXCEPTION = 0, 1, 2, 3


def words(*values):
    return struct.pack(f"<{len(values)}H", *values)


def request(function, count, values=(), noise=b"", code=2, slave=1):
    replied = words(*range(count)) if function == READ else b""
    head = bytes([slave - 1, function]) + words(23) + bytes([count - 1]) + words(*values)
    return head + bytes([len(noise)]) + noise + bytes([code]) + replied


def piece(kind, content=b""):
    return bytes([kind]) + (bytes([len(content)]) if kind in (NOISE, GOOD_CRC) else b"") + content


modbus = lambda name, content: seed("modbus_reply", name, content)
modbus("read", request(READ, 3) + piece(REPLY, words(1, 2, 3)))
modbus("read-all", request(READ, 96) + piece(REPLY, words(*range(96))))
modbus("read-most", request(READ, 125, noise=b"abc") + piece(REPLY, words(*range(65000, 65125))))
modbus("write", request(SINGLE, 1, [500]) + piece(REPLY))
modbus("write-several", request(SEVERAL, 2, [500, 65535]) + piece(REPLY))
modbus("write-most", request(SEVERAL, 123, range(123)) + piece(REPLY))
modbus("exception", request(READ, 3, code=6) + piece(EXCEPTION, b"\x02"))
modbus("exception-unknown", request(SINGLE, 1, [1], code=9) + piece(EXCEPTION, b"\x0b"))
modbus("noise-in-front", request(READ, 1, noise=b"\1\3\2\0") + piece(NOISE, b"\1\3") + piece(REPLY, words(7)))
modbus("cut", request(READ, 2) + piece(NOISE, b"\1\3\4\0\1\0"))
modbus("wrong-crc", request(READ, 1) + piece(NOISE, b"\1\3\2\0\1\0\0"))
modbus("other-slave", request(READ, 1) + piece(GOOD_CRC, b"\2\3\2\0\1") + piece(REPLY, words(7)))
modbus("other-function", request(READ, 1) + piece(GOOD_CRC, b"\1\6\0\x17\0\1"))
modbus("reply-within-another", request(READ, 1) + piece(GOOD_CRC, b"\2\3\7\1\3\2\0\1\x79\x84"))
modbus("two-replies", request(READ, 1, slave=247) + piece(REPLY, words(7)) + piece(REPLY, words(8)))

# The boot frame reader: longest payload - 1, place of the cut, bytes before the frame, payload.


def boot(name, payload, front=b"", most=255, cut=3):
    seed("boot_frame", name, bytes([most, cut, len(front)]) + front + payload)


boot("one-byte", b"\x01", most=0)
boot("marks", b"\x0f\x04\x05\x0f\x0f\x05\x05\x04")
boot("empty", b"")
boot("version", b"\x00\x02")
boot("read", b"\x01\x40\x00\x08\x00" + bytes(range(64)))
boot("longest", bytes(range(256)), cut=200)
boot("too-long", bytes(20), most=9)
boot("marks-in-front", b"abc", front=b"\x0f\x0f\x0fxy\x0f")
boot("frame-on-the-line", b"\x0f\x0f\x01\x02\xfd\x04")
boot("frame-begun-anew", b"\x0f\x0f\x01\x0f\x0f\x02\xfe\x04")
boot("wrong-checksum", b"zz\x0f\x0f\x01\x02\xfc\x04\x0f\x0f\x02\xfe\x04")
boot("escaped-on-the-line", b"\x0f\x0f\x05\x0f\x05\x05\xec\x04")

# Hex files and memory images.


def record(kind, address, data):
    content = bytes([len(data), address >> 8, address & 0xFF, kind]) + data
    return ":" + (content + bytes([-sum(content) & 0xFF])).hex().upper()


def upper(word):
    return record(4, 0, word.to_bytes(2, "big"))


END = ":00000001FF"
BLOCK = bytes(range(16))


def hex_file(name, *lines, end="\r\n", last=True):
    seed("hex_import", name, end.join(lines) + (end if last else ""))


hex_file("one-record", record(0, 0x800, BLOCK), END)
hex_file("all-regions", *(line for word in (0, 0x1F, 0x20, 0x30, 0xF0, 0x40) for line in (upper(word), record(0, 16, BLOCK))), END)
hex_file("line-feeds", upper(0), record(0, 0x800, BLOCK), END, end="\n")
hex_file("carriage-returns", upper(0), record(0, 0x800, BLOCK), END, end="\r", last=False)
hex_file("unaligned", record(0, 0x80A, BLOCK), record(0, 0x803, b"abc"), END)
hex_file("long-record", record(0, 0x800, bytes(100)), END)
hex_file("longest-record", record(0, 0x810, bytes(240)), END)
hex_file("too-long-record", record(0, 0x810, bytes(255)), END)
hex_file("past-the-region", upper(0xF0), record(0, 0xFFF0, bytes(32)), upper(0x1F), record(0, 0xFFF8, bytes(24)), END)
hex_file("other-types", record(2, 0, b"\x10\x00"), record(5, 0, bytes(4)), record(0, 0, b"a"), END)
hex_file("blank-lines", "", " ", "\t:", END, "Z")
hex_file("lower-case", record(0, 0x800, BLOCK).lower(), END)
hex_file("no-end", record(0, 0x800, BLOCK))
hex_file("wrong-checksum", record(0, 0x800, BLOCK)[:-1] + "0", END)
hex_file("wrong-character", record(0, 0x800, BLOCK), "x", END)
hex_file("short-record", ":10080000F0E8", ":F0", ":", END)
hex_file("not-digits", ":0G0000000", ":0000000x00", END)
hex_file("only-blanks", "   ")
seed("hex_import", "empty", b"")


def image(*lines):
    return "".join(f"{address:06X} {data.hex(' ').upper()}{tail}\r\n" for address, data, tail in lines)


def images(name, *parts):
    seed("memory_images", name, "\f".join(parts))


images("all", image((0x800, BLOCK, ""), (0x810, BLOCK, " ")), image((0, BLOCK, "")), image((0x200000, BLOCK, "")),
       image((0x300000, BLOCK, "")))
images("empty", "")
images("upper-addresses", image((0x10000, BLOCK, ""), (0x1FFF0, BLOCK, " "), (0x20000, BLOCK, "")))
images("first-address", image((0x7F0000, BLOCK, ""), (0xFFFFFF, BLOCK, "")))
images("unaligned", image((0x805, BLOCK, "")))
images("cut-between-bytes", image((0x800, bytes(5), "")), "000010\r\n")
images("cut-within-a-byte", "000800 00 11 2\r\n")
images("not-digits", "00x800 0g hh :: \x00\x00 0C EF\r\n", "zz\n\n\r")
images("lower-case", image((0x800, bytes(range(160, 176)), "")).lower())

# The command line.
for number, text in enumerate([
    "", "   ", "line4.ztv", '"C:\\My Files\\line 4.ztv" /CHECKOUT', "/cmdline /ClearReg /HELP ? /?", 'a"b c"d e',
    'x "a b c', '"" a', "\u00b5.ztv \u00df /\u0131", '"""" " "', "/home/user/a b.ztv",
]):
    seed("command_line", f"{number:02}", text)
for name, arguments in [
    ("list-quotes", ['Roll 12".ztv', '12"', '"', '" "', '"quoted".ztv']),
    ("list-options", ["/CMDLINE", "a b.ztv", '"/checkout"', "/checkout ", "?"]),
    ("list-empty", ["", "x", ""]),
]:
    encoded = [argument.encode() for argument in arguments]
    seed("command_line", name, b"".join(bytes([len(argument)]) + argument for argument in encoded))

# Numeric texts: the decimals (below 128: a text follows; else a number).
for number, (decimals, text) in enumerate([
    (2, "1.256"), (2, "-0.50"), (3, " 1.2345 "), (0, "2.5"), (1, ".5"), (1, "5."), (0, "+12"), (3, "1e3"),
    (2, "1.005"), (2, "-0.004"), (0, "1e308"), (0, "1e309"), (9, "1e-400"), (4, "-1E-5"), (0, "9" * 30),
    (2, "999999999999999.5"), (1, ""), (1, "."), (1, "1.2.3"), (1, "0x10"), (1, "1,5"), (1, "--1"), (1, "1e"),
    (1, "inf"), (1, "\u0661"), (0, "32767.5"), (0, "-32768.5"), (5, "0." + "0" * 40 + "1"),
    (1, "1" + "0" * 400 + "e-5"), (1, "0." + "0" * 400 + "1"), (1, "0." + "0" * 400 + "1e+5"), (0, "1e-99999999999999999999"),
    (0, "1e99999999999999999999"), (0, "0e99999999999999999999"), (3, "1" + "0" * 400 + "e-400"),
]):
    seed("numeric_text", f"text-{number:02}", bytes([decimals]) + text.encode())
for number, value in enumerate([0.0, -0.0, 0.5, 1.5, 2.5, -0.5, 1.005, 255.5, 32767.5, 2147483647.5, -2147483648.5,
                                1e15, 1e22, 5e-324, 1.7976931348623157e308, float("inf"), float("nan"), 0.0005, 16744448.00390625]):
    seed("numeric_text", f"number-{number:02}", bytes([130 + number % 10]) + struct.pack("<d", value))

# The forms of a value: steps.
WORD, RAW, TYPED, MAP = 0, 1, 2, 3


def typed(tag, text):
    return bytes([TYPED, tag, len(text.encode())]) + text.encode()


def value(name, *steps):
    seed("value_text", name, b"".join(steps))


value("words", *(bytes([WORD, tag]) + words(word) for tag in (24, 25, 32, 39, 66, 67) for word in (0, 106, 65535, 32768)))
value("raw", *(bytes([RAW, tag]) + struct.pack("<i", raw)
               for tag in (1, 24, 36, 66) for raw in (0, -50, 5, 42000, 2**31 - 1, -(2**31))))
value("distances", typed(24, '4.00"'), typed(25, "420"), typed(28, "12.00"), typed(29, '100"'), typed(24, "11.5"))
value("voltages", typed(36, "1.5v"), typed(37, "10.00 V"), typed(36, "-1"), typed(37, "99999"))
value("diameters", typed(39, "2"), typed(33, "3.5"), typed(34, "36"), typed(29, "40"))
value("refused", typed(34, ".1.5"), typed(32, "5"), typed(36, "abc"), typed(36, ""), typed(66, "9600"), typed(24, "1e300"))
value("maps", *(bytes([MAP, 0]) + struct.pack("<5i", *five)
                for five in [(5, 0, 10, 100, 200), (-1, 0, 10, 100, 200), (1, 1, 1, 5, 6), (3, 9, 2, -(2**31), 2**31 - 1)]))

# The two databases, in small pages.


def database(target, name, *statements, page=512):
    with tempfile.TemporaryDirectory() as folder:
        path = pathlib.Path(folder) / "database"
        connection = sqlite3.connect(path, isolation_level=None)
        connection.execute(f"PRAGMA page_size = {page}")
        for statement in statements:
            if isinstance(statement, str):
                connection.execute(statement)
            else:
                connection.executemany(*statement)
        connection.execute("VACUUM")
        connection.close()
        seed(target, name, path.read_bytes())


presets = sqlite3.connect(PRESETS)
rows = presets.execute("SELECT * FROM Parameters ORDER BY rowid").fetchall()
units = presets.execute("SELECT * FROM Units ORDER BY rowid").fetchall()
schemas = [sql for (sql,) in presets.execute("SELECT sql FROM sqlite_schema WHERE type = 'table'")]
presets.close()

SETTINGS = [
    "CREATE TABLE Settings (Tag SMALLINT, Name VARCHAR(40), Value INTEGER)",
    "CREATE TABLE Properties (Notes TEXT, SWVersion TEXT, UserUnits TEXT)",
    ("INSERT INTO Settings VALUES (?, ?, ?)", [(tag, row[6], row[3]) for tag, row in enumerate(rows)]),
    "INSERT INTO Properties VALUES ('Line 4', '0.1.0', 'Inches')",
]


def settings(name, *changes, page=512):
    database("settings_file", name, *SETTINGS, *changes, page=page)


settings("shipped", page=4096)
settings("small-pages")
settings("limited", "UPDATE Settings SET Value = CASE Tag % 3 WHEN 0 THEN -1 ELSE 99999 END WHERE Tag != 12")
settings("few", "DELETE FROM Settings WHERE Tag > 20", "UPDATE Settings SET Value = 20 WHERE Tag = 12")
settings("too-few", "DELETE FROM Settings WHERE Tag > 12")
settings("count-negative", "DELETE FROM Settings WHERE Tag > 20", "UPDATE Settings SET Value = -5 WHERE Tag = 12")
settings("no-notes", "DELETE FROM Settings WHERE Tag > 20", "UPDATE Settings SET Value = 20 WHERE Tag = 12", "DELETE FROM Properties")
settings("byte-order-marks", "DELETE FROM Settings WHERE Tag > 20", "UPDATE Settings SET Value = 20 WHERE Tag = 12",
         "UPDATE Properties SET Notes = char(65279, 65279) || 'left'")
settings("text-value", "DELETE FROM Settings WHERE Tag > 20", "UPDATE Settings SET Value = 'x' WHERE Tag = 5")
database("settings_file", "utf-16", "PRAGMA encoding = 'UTF-16'", *SETTINGS,
         "DELETE FROM Settings WHERE Tag > 20", "UPDATE Settings SET Value = 20 WHERE Tag = 12")
database("settings_file", "view", "CREATE TABLE t (Value)", "CREATE VIEW Settings AS SELECT Value FROM t")
seed("settings_file", "text", "Zentrova settings\n")

PARAMETERS = [*schemas, (f"INSERT INTO Parameters VALUES ({','.join('?' * 9)})", rows),
              (f"INSERT INTO Units VALUES ({','.join('?' * 5)})", units)]
FEW = ("DELETE FROM Parameters WHERE rowid > 25", "UPDATE Parameters SET Value = 25 WHERE rowid = 13")


def presets_file(name, *changes, page=1024):
    database("presets_file", name, *PARAMETERS, *changes, page=page)


seed("presets_file", "shipped", PRESETS.read_bytes())
presets_file("small-pages")
presets_file("few", *FEW)
presets_file("too-few", *FEW, "DELETE FROM Parameters WHERE rowid > 20")
presets_file("no-units", *FEW, "DELETE FROM Units")
presets_file("units-unknown", *FEW, "UPDATE Parameters SET Units = rowid * 3 - 10, DecimalPlaces = rowid - 5")
presets_file("too-large", *FEW, "UPDATE Parameters SET Max = 2147483648")
presets_file("limits", *FEW, "UPDATE Parameters SET Max = 2147483647, Min = -2147483648, DecimalPlaces = 3")
