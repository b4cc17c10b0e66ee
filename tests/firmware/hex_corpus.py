#!/usr/bin/env python3
"""Makes good and broken INHEX32 files and memory images, the same ones in every run: hex_corpus.py FOLDER
  FOLDER/padded   good files with at most one record for each 16-byte block, which other programs read alike
  FOLDER/good     more good files, which other programs reject or read differently
  FOLDER/broken   files whose names start with the code that the check must return
  FOLDER/garbage  damaged files and noise, with any code
  FOLDER/images   good and bad contents for a memory image"""

import pathlib
import random
import sys

END = ":00000001FF"
UPPER_WORDS = [0x00, 0x01, 0x1F, 0x20, 0x30, 0xF0]
LINE_ENDS = {"crlf": "\r\n", "lf": "\n", "cr": "\r"}

numbers = random.Random(70214)


def record(kind, address, data):
    content = bytes([len(data), address >> 8, address & 0xFF, kind]) + data
    return ":" + (content + bytes([-sum(content) & 0xFF])).hex().upper()


def upper_word(word):
    return record(4, 0, word.to_bytes(2, "big"))


def noise(count):
    return numbers.randbytes(count)


def small(count):
    """Bytes with a low sum."""
    return bytes(numbers.randrange(100) for _ in range(count))


def text(lines, end="\r\n", last=True):
    return end.join(lines) + (end if last else "")


def program(length=16, count=512, start=0x0800):
    """Consecutive records of one length."""
    return [upper_word(0)] + [record(0, start + n * length, noise(length)) for n in range(count)]


def padded_record(block):
    """A record within one block of 16 bytes."""
    offset = numbers.randrange(16)
    return record(0, block * 16 + offset, noise(numbers.randint(1, 16 - offset)))


def scattered(long_records):
    """Blocks of every region, in random order."""
    lines = []
    for word in numbers.sample(UPPER_WORDS, len(UPPER_WORDS)):
        lines.append(upper_word(word))
        blocks = numbers.sample(range(0, 0x1000, 16), 40)
        for block in blocks:
            if long_records and numbers.random() < 0.5:
                lines.append(record(0, block * 16, small(numbers.randrange(16, 241))))
            else:
                lines.append(padded_record(block + numbers.randrange(16)))
    return lines


def padded():
    whole = program() + [END]
    yield "one_byte", text([record(0, 0x800, b"a"), END])
    yield "no_upper_word", text([record(0, 0x10 * n, noise(16)) for n in range(64)] + [END])
    yield "crlf", text(whole)
    yield "lf", text(whole, "\n")
    yield "lower_case", text([line.lower() for line in whole])
    yield "mixed_case", text([line.lower() if n % 2 else line for n, line in enumerate(whole)])
    yield "no_last_line_end", text(whole, last=False)
    yield "boot_block", text([upper_word(0), record(0, 0, noise(16)), record(0, 0x7F0, noise(16)), END])
    yield "whole_flash", text(program(count=2944) + [END])
    for length in (16, 32, 48, 64, 128, 224, 240):
        records = [record(0, 0x1000 + n * length, small(length)) for n in range(20)]
        yield f"length_{length}", text([upper_word(0)] + records + [END])
    for length in range(1, 17):
        records = [record(0, 0x1000 + n * 16 + (16 - length), noise(length)) for n in range(20)]
        yield f"end_of_block_{length}", text([upper_word(0)] + records + [END])
    backwards = program()
    yield "backwards", text(backwards[:1] + backwards[:0:-1] + [END])
    for word in UPPER_WORDS:
        yield f"upper_word_{word:04X}", text(
            [upper_word(word)] + [record(0, a, noise(16)) for a in (0, 0x800, 0xFFF0)] + [END])
    for n in range(10):
        yield f"scattered_{n}", text(scattered(long_records=False) + [END])
        yield f"scattered_long_{n}", text(scattered(long_records=True) + [END])


def good():
    whole = program(count=40)
    yield "only_end", text([END])
    yield "only_end_no_line_end", END
    yield "cr", text(whole + [END], "\r")
    yield "mixed_line_ends", "".join(
        line + numbers.choice(list(LINE_ENDS.values())) for line in whole + [END])
    yield "blank_lines", "\r\n \r\n\t\r\n" + text([line + "\r\n" for line in whole] + [END])
    yield "overlaps", text([record(0, 0x800, noise(16)) for _ in range(9)] + [END])
    yield "shared_blocks", text([record(0, 0x800 + n, noise(1)) for n in range(64)] + [END])
    for offset in range(1, 16):
        yield f"past_the_boundary_{offset}", text([record(0, 0x800 + offset, noise(16)), END])
    for kind in list(range(2, 16)) + [0x7F, 0xFF]:
        yield f"type_{kind}", text(whole + [record(kind, 0, noise(4)), record(0, 0x10, noise(16)), END])
    for word in (0x21, 0x2F, 0x31, 0xEF, 0xF1, 0x100, 0x7FFF, 0x8000, 0xFFFF):
        yield f"dropped_{word:04X}", text([upper_word(word)] + whole[1:] + [END])
    for length in range(238, 256):
        for offset in (0, 1, 2, 14, 15):
            yield f"long_{length}_{offset}", text([record(0, offset, small(length)), END])
            yield f"dropped_long_{length}_{offset}", text(
                [upper_word(0x50), record(0, offset, small(length)), END])
    yield "past_64k", text([record(0, 0xFFF8, noise(32)), END])
    yield "noise_behind_the_end", text(whole + [END, "noise", ":00"])
    yield "huge_line_behind_the_end", text([END]) + "x" * 300000
    yield "noise_behind_records", text([line + "00 noise" for line in whole] + [END])
    yield "huge_record_line", record(0, 0, b"a") + "5" * 300000 + "\n" + END
    yield "zero_length", text([record(0, 0, b""), ":", END])


def broken():
    whole = program(count=40)
    yield -1, "empty", ""
    yield -3, "checksum", text(whole + [":0100000041BF", END])
    yield -3, "checksum_of_end", text(whole + [":00000001FE"])
    yield -3, "checksum_missing", text(whole + [":0100000041", END])
    yield -3, "record_cut_off", text(whole + [whole[1][:20], END])
    yield -3, "digit_lost", text(whole + [whole[1][:20] + whole[1][21:], END])
    yield -4, "letter", text(whole + ["x", END])
    yield -4, "colon_missing", text(whole + [whole[1][1:], END])
    yield -4, "memory_image", "000800 " + "FF " * 16 + "\r\n"
    yield -4, "s_record", text(["S00600004844521B", "S9030000FC"])
    yield -4, "byte_order_mark", "\ufeff" + text(whole + [END])
    yield -4, "huge_line", "x" * 300000
    for name, line_end in LINE_ENDS.items():
        yield -4, f"letter_{name}", text(whole + ["x", END], line_end)
        yield -5, f"no_end_{name}", text(whole, line_end)
        yield -5, f"no_end_{name}_no_line_end", text(whole, line_end, last=False)
        yield -5, f"blank_lines_{name}", text(["", " ", "\t"], line_end)
        yield -1, f"nothing_{name}", text([], line_end, last=False)
    yield -5, "indented_end", text(whole + [" " + END])
    for length in (129, 200, 255):
        yield -6, f"sum_{length}", text(whole + [record(0, 0, b"\xff" * length), END])
    yield -6, "sum_of_end", text([":FF000001" + "F" * 512])


def garbage():
    whole = text(program(count=30) + [END]).encode()
    for n in range(80):
        damaged = bytearray(whole)
        for _ in range(numbers.choice((1, 2, 20))):
            damaged[numbers.randrange(len(damaged))] = numbers.choice(b"0123456789ABCDEF: \t\r\nx\0\xff")
        yield f"damaged_{n}", bytes(damaged)
    for n in range(25):
        yield f"cut_{n}", whole[numbers.randrange(len(whole)) :]
        yield f"noise_{n}", b":" + noise(numbers.randrange(2000))
        yield f"digits_{n}", b":" + bytes(numbers.choices(b"0123456789ABCDEF", k=numbers.randrange(1500)))
    # Random records with good checksums, so that they pass the check and reach the import.
    for n in range(150):
        lines = []
        for _ in range(numbers.randrange(12)):
            kind = numbers.choice((0, 0, 0, 0, 4, 4, 2, 3, 5, numbers.randrange(256)))
            data = small(numbers.choice((0, 1, 2, 3, 16, numbers.randrange(256))))
            lines.append(record(kind, numbers.randrange(0x10000), data) if kind != 4
                         else upper_word(numbers.choice(UPPER_WORDS + [numbers.randrange(0x200)])))
        yield f"records_{n}", text(lines + [END]).encode()


def images():
    line = "000800 " + "A5 " * 16
    yield "empty", b""
    yield "line_end", b"\r\n"
    yield "no_line_end", line.encode()
    yield "noise", noise(5000)
    yield "huge_line", line.encode() + b"0" * 300000
    yield "upper_address", b"FFFFFF " + b"A5 " * 16
    for length in range(len(line)):
        yield f"cut_{length}", (line[:length] + "\r\n" + line).encode()
    for n in range(100):
        damaged = bytearray((line + "\r\n").encode() * 3)
        for _ in range(20):
            damaged[numbers.randrange(len(damaged))] = numbers.randrange(256)
        yield f"damaged_{n}", bytes(damaged)


def write(folder, name, content):
    folder.mkdir(parents=True, exist_ok=True)
    (folder / name).write_bytes(content.encode() if isinstance(content, str) else content)


def main():
    folder = pathlib.Path(sys.argv[1])
    for make in (padded, good, garbage):
        for name, content in make():
            write(folder / make.__name__, name + ".hex", content)
    for code, name, content in broken():
        write(folder / "broken", f"{code}_{name}.hex", content)
    for name, content in images():
        write(folder / "images", name + ".mcp", content)


main()
