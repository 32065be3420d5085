# SPDX-License-Identifier: MIT
"""Writes archives as an ill-meaning or broken tool would: make_archives.py FOLDER. A file a case, named after it."""
import stat
import struct
import sys
import warnings
import zipfile

warnings.simplefilter("ignore")  # of duplicate names, which are meant
CENTRAL = b"PK\x01\x02"
LOCAL = b"PK\x03\x04"
END = b"PK\x05\x06"


def info(name, mode=0):
    entry = zipfile.ZipInfo("x", (2024, 2, 29, 1, 2, 4))
    entry.filename = name  # past the constructor, which mends names
    entry.create_system = 3
    entry.external_attr = mode << 16
    return entry


def write(path, *entries, method=zipfile.ZIP_DEFLATED):
    with zipfile.ZipFile(path, "w", method) as archive:
        for name, mode, content in entries:
            archive.writestr(info(name, mode), content, compress_type=method)


def patched(path, target, *changes):
    """A copy of an archive with (signature, offset, bytes) written over each header of that signature."""
    with open(path, "rb") as file:
        data = bytearray(file.read())
    for signature, offset, new in changes:
        at = data.find(signature)
        while at >= 0:
            data[at + offset:at + offset + len(new)] = new
            at = data.find(signature, at + 4)
    with open(target, "wb") as file:
        file.write(data)


def names(folder):
    good = ("good", 0, b"good")
    for case, name in (
            ("up", "../evil"), ("up within", "a/../../evil"), ("up at the end", "a/.."), ("up alone", ".."),
            ("folder up", "../"), ("absolute", "/tmp/tessera-evil"), ("backslashes", "..\\evil"),
            ("backslashes within", "a\\..\\..\\evil"), ("absolute with backslash", "\\evil"), ("drive", "C:/evil"),
            ("drive with backslash", "c:\\evil"), ("empty component", "a//b"), ("dot", "./a"), ("dot alone", "."),
            ("line end", "a\nb"), ("component too long", "n" * 256), ("name too long", "/".join(["n" * 200] * 11)),
            ("too deep", "/".join("d" * 33)), ("empty", "")):
        write(f"{folder}/name {case}.zip", good, (name, 0, b"evil"))
    write(f"{folder}/name not UTF-8.zip", good, ("QQ", 0, b"evil"))
    with open(f"{folder}/name not UTF-8.zip", "rb") as file:
        data = file.read().replace(b"QQ", b"\xff\xfe")
    with open(f"{folder}/name not UTF-8.zip", "wb") as file:
        file.write(data)


def specials(folder):
    link = stat.S_IFLNK | 0o777
    write(f"{folder}/link to a file.zip", ("a", link, b"/etc/passwd"))
    write(f"{folder}/link to a folder.zip", ("a", link, b"/tmp"), ("a/evil", 0, b"evil"))
    write(f"{folder}/link named as a folder.zip", ("a/", link, b"/tmp"))
    for case, kind in (("pipe", stat.S_IFIFO), ("socket", stat.S_IFSOCK), ("block device", stat.S_IFBLK),
                       ("character device", stat.S_IFCHR), ("folder without its slash", stat.S_IFDIR)):
        write(f"{folder}/{case}.zip", ("good", 0, b"good"), ("a", kind | 0o644, b""))
    write(f"{folder}/same name.zip", ("a", 0, b"1"), ("a", 0, b"2"))
    write(f"{folder}/same folder.zip", ("a/", 0, b""), ("a/", 0, b""))
    write(f"{folder}/file then folder.zip", ("a", 0, b"1"), ("a/b", 0, b"2"))
    write(f"{folder}/folder then file.zip", ("a/b", 0, b"1"), ("a", 0, b"2"))
    write(f"{folder}/file then empty folder.zip", ("a", 0, b"1"), ("a/", 0, b""))
    write(f"{folder}/plain.zip", ("a", 0, b"a" * 1000))
    patched(f"{folder}/plain.zip", f"{folder}/encrypted.zip", (LOCAL, 6, b"\x01\x00"), (CENTRAL, 8, b"\x01\x00"))
    patched(f"{folder}/plain.zip", f"{folder}/encrypted in its directory only.zip", (CENTRAL, 8, b"\x01\x00"))


def sizes(folder):
    write(f"{folder}/bomb.zip", ("a", 0, bytes(50_000_000)))
    write(f"{folder}/bomb in pieces.zip", *((f"f{i}", 0, bytes(600_000)) for i in range(2)))
    for case, told in (("small", 10), ("nothing", 0)):
        size = struct.pack("<I", told)
        patched(f"{folder}/bomb.zip", f"{folder}/bomb that tells {case}.zip", (LOCAL, 22, size), (CENTRAL, 24, size))
    patched(f"{folder}/plain.zip", f"{folder}/tells more than there is.zip", (LOCAL, 22, struct.pack("<I", 2000)),
            (CENTRAL, 24, struct.pack("<I", 2000)))
    patched(f"{folder}/plain.zip", f"{folder}/tells 4 GB.zip", (CENTRAL, 24, b"\xfe\xff\xff\xff"))
    write(f"{folder}/eleven entries.zip", *((f"f{i}", 0, b"") for i in range(11)))
    write(f"{folder}/three files in nine folders each.zip", *((f"{i}/b/c/d/e/f/g/h/i/x", 0, b"") for i in range(3)))
    # Two entries that share their packed bytes.
    with open(f"{folder}/bomb in pieces.zip", "rb") as file:
        data = bytearray(file.read())
    second = data.find(CENTRAL, data.find(CENTRAL) + 4)
    data[second + 42:second + 46] = bytes(4)
    with open(f"{folder}/overlapping.zip", "wb") as file:
        file.write(data)


def broken(folder):
    with open(f"{folder}/plain.zip", "rb") as file:
        data = file.read()

    def store(case, content):
        with open(f"{folder}/{case}.zip", "wb") as file:
            file.write(content)

    store("no bytes", b"")
    store("text", b"this is no archive\n" * 100)
    store("first half", data[:len(data) // 2])
    store("without its last bytes", data[:-10])
    store("without its first bytes", data[10:])
    store("directory overwritten", data.replace(CENTRAL, b"XXXX"))
    store("local header overwritten", data.replace(LOCAL, b"XXXX"))
    flipped = bytearray(data)
    flipped[len(LOCAL) + 30] ^= 0x55
    store("packed bytes changed", bytes(flipped))
    patched(f"{folder}/plain.zip", f"{folder}/wrong checksum.zip", (LOCAL, 14, b"1234"), (CENTRAL, 16, b"1234"))
    patched(f"{folder}/plain.zip", f"{folder}/more entries told.zip", (END, 8, b"\x05\x00\x05\x00"))
    patched(f"{folder}/plain.zip", f"{folder}/unknown method.zip", (LOCAL, 8, b"\x63\x00"), (CENTRAL, 10, b"\x63\x00"))
    write(f"{folder}/bzip2.zip", ("a", 0, b"a" * 1000), method=zipfile.ZIP_BZIP2)
    write(f"{folder}/lzma.zip", ("a", 0, b"a" * 1000), method=zipfile.ZIP_LZMA)


def whole(folder):
    with zipfile.ZipFile(f"{folder}/whole.zip", "w") as archive:
        archive.writestr(info("top.mkf"), b"top" * 1000, compress_type=zipfile.ZIP_DEFLATED)
        archive.writestr(info("MultiDocMarkFile/"), b"")
        archive.writestr(info("MultiDocMarkFile/set.mdf", stat.S_IFREG | 0o600), b"set")
        archive.writestr(info("\u9f7f\u8f6e.mkf"), b"gear")
        archive.writestr(info("without/own/folder.mkf"), b"deep")
        archive.writestr(info("empty.mkf"), b"")
        archive.writestr(info("a\\b.mkf"), b"backslash")
        archive.writestr(info("only/", stat.S_IFDIR | 0o755), b"")
    with zipfile.ZipFile(f"{folder}/no entries.zip", "w"):
        pass


if __name__ == "__main__":
    for make in (names, specials, sizes, broken, whole):
        make(sys.argv[1])
