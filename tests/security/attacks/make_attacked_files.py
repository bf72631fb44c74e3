#!/usr/bin/env python3
"""Makes files whose signatures are under attack, and says of each what the system answers and what we must decide.

make_attacked_files.py LIBRARY FOLDER: writes changed and signed copies of LIBRARY to FOLDER, with keys and
authorities that exist nowhere else, and attacked_files.json with a row for each:

  file, done     its name, and what was done to it
  signatures     for each, outer first: "answer" of WinVerifyTrust as Windows documents it, on a machine that has the
                 authority but not the self-made root; "key" and "subject" of the signer, and the encoded subject
  trusted        what IsFileTrusted must decide with the listed key
  dropbox        what IsDropboxFileTrusted must decide
  unlike         if not empty, why the system that runs the tests may answer otherwise
  unasked        if not empty, why that system must not be asked

The documented answers and the decisions are written down here by hand. Each run makes new keys; everything else is
the same, with dates relative to now."""

import concurrent.futures
import json
import pathlib
import shutil
import sys

from signing_parts import Key, Name, SignedImage, certificate, run

VERIFIED = 0
EXPIRED = 0x800B0101             # CERT_E_EXPIRED: not within its time, so before it too
UNTRUSTED_ROOT = 0x800B0109      # CERT_E_UNTRUSTEDROOT
CHAINING = 0x800B010A            # CERT_E_CHAINING: no way to a root
WRONG_USAGE = 0x800B0110         # CERT_E_WRONG_USAGE
NO_SIGNATURE = 0x800B0100        # TRUST_E_NOSIGNATURE
DISTRUSTED = 0x800B0111          # TRUST_E_EXPLICIT_DISTRUST: the machine's list of certificates that it rejects
CERT_SIGNATURE = 0x80096004      # TRUST_E_CERT_SIGNATURE
BAD_DIGEST = 0x80096010          # TRUST_E_BAD_DIGEST
NO_AUTHORITY = 0x80096019        # TRUST_E_BASIC_CONSTRAINTS: the issuer's certificate is not that of an authority
BAD_SIGNATURE = 0x80090006       # NTE_BAD_SIGNATURE
HASH_VALUE = 0x80091007          # CRYPT_E_HASH_VALUE

library, folder = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])
work = folder / "work"
shutil.rmtree(folder, ignore_errors=True)
work.mkdir(parents=True)
workers = concurrent.futures.ThreadPoolExecutor(4)

KINDS = {"authority": "RSA:2048", "selfmade": "RSA:2048", "listed": "RSA:2048", "other": "RSA:2048",
         "short": "RSA:1024", "long": "RSA:3072", "curve": "EC:P-256"}
keys = dict(zip(KINDS, workers.map(lambda name: Key(work, name, KINDS[name]), KINDS)))
AUTHORITY, SELF_MADE = Name(("CN", "Throw-away authority")), Name(("CN", "Self-made root"))
roots = {"authority": certificate(keys["authority"], AUTHORITY, keys["authority"], AUTHORITY, is_authority=True),
         "selfmade": certificate(keys["selfmade"], SELF_MADE, keys["selfmade"], SELF_MADE, is_authority=True)}
rows = []


class Signer:
    """A key with a certificate, and the answer that Windows documents for its intact signature."""

    def __init__(self, label, key="listed", answer=VERIFIED, name=Name(("CN", "Meadow"), ("O", "Meadow")),
                 root="authority", chain=None, **options):
        self.key, self.answer, self.name, self.file = keys[key], answer, name, work / f"{label}.pem"
        issuers = {"authority": (keys["authority"], AUTHORITY), "selfmade": (keys["selfmade"], SELF_MADE),
                   "itself": (self.key, name)}
        leaf = certificate(self.key, name, *issuers[root], **options)
        self.file.write_text(leaf + (roots.get(root, "") if chain is None else chain))

    def sign(self, source, target, *options):
        run("osslsigncode", "sign", "-h", "sha256", *options, "-certs", self.file, "-key", self.key.file, "-in", source,
            "-out", target)

    def record(self, answer=None):
        return {"answer": self.answer if answer is None else answer, "key": self.key.text,
                "subject": self.name.text, "encoded": self.name.der.hex()}


def add(name, done, signatures, trusted, make, dropbox=False, unlike="", unasked=""):
    """A row, and its file: make(path) writes it, or gives its bytes. `signatures` are signers or their records."""
    records = [one.record() if isinstance(one, Signer) else one for one in signatures]
    rows.append({"file": f"{name}.dll", "done": done, "signatures": records, "trusted": trusted, "dropbox": dropbox,
                 "unlike": unlike, "unasked": unasked})

    def write(path=folder / f"{name}.dll"):
        made = make(path)
        if made is not None:
            path.write_bytes(bytes(made.bytes if isinstance(made, SignedImage) else made))
    return workers.submit(write)


def signed(name, done, signer, trusted, *options, dropbox=False):
    return add(name, done, [signer], trusted, lambda path: signer.sign(library, path, *options), dropbox)


good = Signer("good")
good.sign(library, work / "good.dll")
GOOD = (work / "good.dll").read_bytes()
unlisted = Signer("unlisted", key="other")
rooted = Signer("rooted", root="selfmade", answer=UNTRUSTED_ROOT)
expired = Signer("expired", days=(-800, -400), answer=EXPIRED)
plain = SignedImage(library)
image = SignedImage(GOOD)
pending = []


def attack(name, done, make, answer=BAD_DIGEST, **notes):
    """A copy of the good file that was changed after signing: make(SignedImage) changes it, or gives other bytes."""
    trusted = answer == VERIFIED
    pending.append(add(name, done, [good.record(answer)], trusted, lambda path: make(SignedImage(GOOD)), **notes))


# Unsigned.
pending += [add("unsigned", "never signed", [], False, lambda path: plain),
            add("empty", "no bytes", [], False, lambda path: b""),
            add("text", "a text with the name of a library", [], False, lambda path: b"This is no program.\r\n"),
            add("removed", "the signature removed", [], False, lambda path: run(
                "osslsigncode", "remove-signature", "-in", work / "good.dll", "-out", path) and None),
            add("table-hidden", "signed; the header's place and length of the certificate table set to 0", [], False,
                lambda path: (lambda one: one.set(one.directory, 0).set(one.directory + 4, 0))(SignedImage(GOOD)))]

# Intact, with one signature.
ca_no_more = certificate(keys["authority"], AUTHORITY, keys["authority"], AUTHORITY)
pending += [
    signed("good", "signed with the listed key", good, True),
    signed("unlisted", "signed with another key", unlisted, False),
    signed("expired", "listed key, certificate expired", expired, True),
    signed("expired-unlisted", "another key, certificate expired",
           Signer("expired-unlisted", key="other", days=(-800, -400), answer=EXPIRED), False),
    signed("expired-self-made", "listed key, expired, under a self-made root", Signer(
        "expired-self-made", root="selfmade", days=(-800, -400), answer=UNTRUSTED_ROOT), False),
    signed("not-yet-valid", "listed key, certificate of the future",
           Signer("future", days=(400, 800), answer=EXPIRED), True),
    signed("not-yet-valid-unlisted", "another key, certificate of the future",
           Signer("future-unlisted", key="other", days=(400, 800), answer=EXPIRED), False),
    signed("self-made", "listed key under a self-made root", rooted, False),
    signed("self-made-unlisted", "another key under a self-made root",
           Signer("rooted-unlisted", key="other", root="selfmade", answer=UNTRUSTED_ROOT), False),
    signed("self-signed", "listed key, its certificate signed with the same key",
           Signer("self-signed", root="itself", answer=UNTRUSTED_ROOT), False),
    signed("other-usage", "listed key, certificate for servers",
           Signer("server", usage="serverAuth", answer=WRONG_USAGE), False),
    signed("any-usage", "listed key, certificate without a list of usages", Signer("any", usage=None), True),
    signed("authority-as-signer", "signed with the authority's own key",
           Signer("ca", key="authority", name=AUTHORITY), False),
    signed("no-chain", "listed key, the issuer's certificate neither in the file nor on the machine",
           Signer("no-chain", chain="", answer=CHAINING), False),
    signed("wrong-chain", "the same, another root in the file",
           Signer("wrong-chain", chain=roots["selfmade"], answer=CHAINING), False),
    signed("issuer-no-authority", "listed key, issued by a certificate that may not issue",
           Signer("no-ca", chain=ca_no_more, answer=NO_AUTHORITY), False),
    signed("distrusted", "listed key, on the machine's list of distrusted certificates",
           Signer("distrusted", answer=DISTRUSTED), False),
    signed("key-elsewhere", "the listed key, issued by a second authority that the machine trusts too",
           Signer("elsewhere", root="selfmade"), True),
    signed("short-key", "another key, of 1024 bits", Signer("short", key="short"), False),
    signed("long-key", "another key, of 3072 bits", Signer("long", key="long"), False),
    signed("curve-key", "another key, of an elliptic curve", Signer("curve", key="curve"), False),
    signed("sha512", "listed key, digest SHA-512", good, True, "-h", "sha512"),
    signed("page-hashes", "listed key, with a digest of each page", good, True, "-ph"),
]

# Two signatures, each in five states. The decision needs one that the system accepts and one with the listed key.
STATES = {"good": good, "unlisted": unlisted, "self-made": rooted, "expired": expired, "broken": good}
BOTH = {  # outer: decision for each inner state, in the order of STATES
    "good":      (True, True, True, True, True),
    "unlisted":  (True, False, True, True, False),
    "self-made": (True, True, False, True, False),
    "expired":   (True, True, True, True, True),
    "broken":    (True, False, False, True, False),
}


def nest(outer, inner):
    def make(path):
        first = work / f"first-{outer}-{inner}.dll"
        STATES[outer].sign(library, first)
        STATES[inner].sign(first, path, "-nest")
        both = SignedImage(path)
        outer_digest, inner_digest = both.digests()
        if outer == "broken":
            both.flip(outer_digest)
        if inner == "broken":
            both.flip(inner_digest)
        return both

    records = [STATES[state].record(BAD_DIGEST if state == "broken" else None) for state in (outer, inner)]
    expected = BOTH[outer][list(STATES).index(inner)]
    return add(f"outer-{outer}-inner-{inner}", f"two signatures: outer {outer}, inner {inner}", records, expected, make)


pending += [nest(outer, inner) for outer in STATES for inner in STATES]

# Changed after signing.
attack("code", "a byte of the code", lambda one: one.flip(one.code))
attack("last-byte", "the last byte before the certificates", lambda one: one.flip(one.table - 1))
attack("dos-text", "a byte of the text for DOS", lambda one: one.flip(0x50))
attack("header-time", "the time in the header", lambda one: one.flip(one.header + 8))
attack("header-flags", "a flag of the library in the header", lambda one: one.flip(one.header + 22))
attack("entry-point", "the address of the entry point", lambda one: one.flip(one.header + 24 + 16))
attack("import-table", "the place of the import table", lambda one: one.flip(one.header + 24 + 112 + 8))
attack("section-name", "the name of a section", lambda one: one.flip(one.header + 24 + 240))
attack("checksum", "the checksum, which no signature covers", lambda one: one.flip(one.checksum), VERIFIED)
attack("transplanted", "the certificates of another version of the file",
       lambda one: one.bytes[:one.code] + bytes([one.bytes[one.code] ^ 0xff]) + one.bytes[one.code + 1:])
attack("digest", "the digest in the signature", lambda one: one.flip(one.digests()[0]), HASH_VALUE)
attack("signature-bytes", "the last byte of the signature itself",
       lambda one: one.flip(one.bytes.rindex(bytes([0x04, 0x82, 0x01, 0x00]), one.table) + 4 + 255), BAD_SIGNATURE)
attack("leaf-subject", "the subject in the signer's certificate",
       lambda one: one.flip(one.bytes.index(b"Meadow", one.table)), CERT_SIGNATURE,
       unlike="Wine 8 does not verify certificates")
attack("leaf-key", "the key in the signer's certificate",
       lambda one: one.flip(one.bytes.index(bytes.fromhex(keys["listed"].text)[40:60], one.table)), BAD_SIGNATURE)
attack("table-kind", "the kind of the certificate, PKCS 7, changed to X.509",
       lambda one: one.set(one.table + 4, 0x00010200), NO_SIGNATURE, unasked="Wine 8 crashes in WinVerifyTrust")
attack("der-tag", "the first byte of the PKCS 7 data", lambda one: one.flip(one.table + 8), NO_SIGNATURE)
attack("zeros", "the certificates overwritten with zeros",
       lambda one: one.bytes[:one.table + 8] + bytes(len(one.bytes) - one.table - 8), NO_SIGNATURE)


# Data appended.
def appended_inside(one):
    size = one.table_size + 4096
    one.set(one.directory + 4, size).set(one.table, size)
    return one.bytes + b"payload " * 512


attack("appended-after", "4 KiB after the certificates", lambda one: one.bytes + b"payload " * 512)
attack("appended-byte", "one byte after the certificates", lambda one: one.bytes + b"!")
attack("appended-inside", "4 KiB inside the certificates, both lengths adapted", appended_inside, VERIFIED)
pending.append(add("appended-inside-strict", "the same, on a machine that checks the padding",
                   [good.record(BAD_DIGEST)], False, lambda path: appended_inside(SignedImage(GOOD)),
                   unlike="only a machine with that setting checks it"))
attack("inserted-before", "8 bytes before the certificates, their place adapted",
       lambda one: (one.set(one.directory, one.table + 8), one.bytes[:len(one.bytes) - one.table_size] + b"payload!" +
                    one.bytes[len(one.bytes) - one.table_size:])[1])

# Two lengths that disagree: of the whole table in the header, and of its entry in the table.
LENGTHS = {"entry-zero": 0, "entry-seven": 7, "entry-header-only": 8, "entry-half": image.table_size // 2,
           "entry-longer": image.table_size + 8, "entry-huge": 0xffffffff, "entry-negative": 0x80000000}
for label, length in LENGTHS.items():
    attack(f"length-{label}", f"the entry's length {length:#x}, the table's {image.table_size:#x}",
           lambda one, length=length: one.set(one.table, length), NO_SIGNATURE)
TABLES = {"zero": 0, "seven": 7, "half": image.table_size // 2, "longer": image.table_size + 8, "huge": 0xfffffff8}
for label, length in TABLES.items():
    attack(f"length-table-{label}", f"the table's length {length:#x}, the entry's {image.table_size:#x}",
           lambda one, length=length: one.set(one.directory + 4, length), NO_SIGNATURE)
attack("place-beyond", "the place of the table after the end of the file",
       lambda one: one.set(one.directory, len(one.bytes) + 8), NO_SIGNATURE)
attack("place-zero", "the place of the table at the file's beginning", lambda one: one.set(one.directory, 0),
       NO_SIGNATURE)
attack("place-wraps", "the place of the table plus its length beyond 32 bits",
       lambda one: one.set(one.directory, 0xfffffff0), NO_SIGNATURE)
attack("der-longer", "the length in the PKCS 7 data greater than the entry",
       lambda one: one.set(one.table + 10, 0xffff), NO_SIGNATURE)

# Truncated.
CUTS = {"dos": 63, "header": image.header + 10, "directories": image.directory + 2, "sections": image.header + 24 + 250,
        "code": image.code + 1, "before-table": image.table, "entry": image.table + 4, "entry-header": image.table + 8,
        "der": image.table + 12, "quarter": image.table + image.table_size // 4,
        "half": image.table + image.table_size // 2, "last-16": len(GOOD) - 16, "last-byte": len(GOOD) - 1}
for label, length in CUTS.items():
    attack(f"cut-{label}", f"truncated to {length} of {len(GOOD)} bytes", lambda one, length=length: one.bytes[:length],
           NO_SIGNATURE)


# Subjects.
def subject(name, done, pairs, dropbox, trusted=False, key="other"):
    signer = Signer(f"name-{name}", key=key, name=Name(*pairs))
    return signed(f"name-{name}", done, signer, trusted, dropbox=dropbox)


DROPBOX = "Dropbox, Inc"
pending += [
    subject("dropbox", "the common name of Dropbox", [("O", DROPBOX), ("CN", DROPBOX)], True),
    subject("organization-only", "the name as organization only", [("O", DROPBOX), ("CN", "Meadow")], False),
    subject("cn-in-organization", "\"CN=\" and the name inside the organization",
            [("CN", "Meadow"), ("O", f"CN={DROPBOX}")], False),
    subject("cn-in-common-name", "\"CN=\" and the name inside the common name", [("CN", f"CN={DROPBOX}")], False),
    subject("cn-after-comma", "\", CN=\" and the name inside the common name", [("CN", f"Meadow, CN={DROPBOX}")], False),
    # Kept: the text of a subject is cut at line ends, and an authority must not issue such a value.
    subject("cn-after-line-end", "a line end, \"CN=\" and the name inside the organization",
            [("CN", "Meadow"), ("O", f"Meadow\r\nCN={DROPBOX}")], True),
    subject("lf-only", "a line feed alone, \"CN=\" and the name inside the organization",
            [("CN", "Meadow"), ("O", f"Meadow\nCN={DROPBOX}")], False),
    subject("case", "the name in small letters", [("CN", DROPBOX.lower())], False),
    subject("blank", "the name with a blank after it", [("CN", DROPBOX + " ")], False),
    subject("look-alike", "the name with a Cyrillic letter", [("CN", "Dr\u043epbox, Inc")], False),
    subject("wide", "the name encoded as UTF-16", [("CN", DROPBOX.encode("utf-16-be"))], True),
    subject("last-counts", "two common names, the last one Dropbox", [("CN", "Meadow"), ("CN", DROPBOX)], True),
    subject("first-is-lost", "two common names, the first one Dropbox", [("CN", DROPBOX), ("CN", "Meadow")], False),
    subject("none", "an empty subject, the listed key", [], False, True, "listed"),
    subject("long-common-name", "a common name of 5,000 bytes, the listed key", [("CN", "n" * 5000)], False, True,
            "listed"),
    subject("long-tail", "the name and 5,000 bytes more", [("CN", DROPBOX + "n" * 5000)], False),
    subject("long-organization", "an organization of 70,000 bytes, then the name",
            [("O", "o" * 70000), ("CN", DROPBOX)], True),
    subject("many-units", "1,000 units, the listed key", [("OU", f"unit {i}") for i in range(1000)] + [("CN", "Meadow")],
            False, True, "listed"),
    subject("long-wide", "a common name of 3,000 characters of three bytes, the listed key", [("CN", "\u6728" * 3000)],
            False, True, "listed"),
    signed("name-dropbox-self-made", "the common name of Dropbox under a self-made root", Signer(
        "dropbox-self-made", key="other", root="selfmade", answer=UNTRUSTED_ROOT, name=Name(("CN", DROPBOX))), False),
    signed("name-dropbox-expired", "the common name of Dropbox, expired", Signer(
        "dropbox-expired", key="other", days=(-800, -400), answer=EXPIRED, name=Name(("CN", DROPBOX))), False,
        dropbox=True),
]

for one in pending:
    one.result()
(folder / "listed_key.txt").write_text(keys["listed"].text + "\n")
(folder / "attacked_files.json").write_text(json.dumps(rows, indent=1))
shutil.rmtree(work)
