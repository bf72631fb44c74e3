"""What make_attacked_files.py needs to sign: keys, certificates of any form, and the fields of a signed PE file."""

import base64
import datetime
import pathlib
import struct
import subprocess


def run(*command, data=None):
    """The output of a program, which must succeed."""
    done = subprocess.run([str(word) for word in command], input=data, capture_output=True)
    if done.returncode != 0:
        raise SystemExit(f"{' '.join(map(str, command))}\n{done.stdout.decode()}{done.stderr.decode()}")
    return done.stdout


# DER, as far as certificates need it.

SHA256_RSA = bytes.fromhex("300d06092a864886f70d01010b0500")
OIDS = {"CN": "550403", "C": "550406", "L": "550407", "S": "550408", "O": "55040a", "OU": "55040b",
        "basicConstraints": "551d13", "keyUsage": "551d0f", "extendedKeyUsage": "551d25",
        "codeSigning": "2b06010505070303", "serverAuth": "2b06010505070301"}


def tlv(tag, *parts):
    content = b"".join(parts)
    if len(content) < 128:
        return bytes([tag, len(content)]) + content
    length = len(content).to_bytes((len(content).bit_length() + 7) // 8, "big")
    return bytes([tag, 0x80 | len(length)]) + length + content


def sequence(*parts):
    return tlv(0x30, *parts)


def oid(name):
    return tlv(0x06, bytes.fromhex(OIDS[name]))


def content_of(der, at=0):
    """The content of the value at this position, and the position after it."""
    length, begin = der[at + 1], at + 2
    if length >= 128:
        begin += length - 128
        length = int.from_bytes(der[at + 2:begin], "big")
    return der[begin:begin + length], begin + length


class Name:
    """A subject: pairs such as ("CN", "A"). `der` is its encoding and `text` what CertNameToStrW makes of it for
    this library: a line for each pair, without quotes. A value that is bytes is encoded as it is, as UTF-16."""

    def __init__(self, *pairs):
        relative = [tlv(0x31, sequence(oid(key), self._value(value))) for key, value in pairs]
        self.der = sequence(*relative)
        self.text = "\r\n".join(f"{key}={self._text(value)}" for key, value in pairs)

    @staticmethod
    def _value(value):
        return tlv(0x1e, value) if isinstance(value, bytes) else tlv(0x0c, value.encode())

    @staticmethod
    def _text(value):
        return value.decode("utf-16-be") if isinstance(value, bytes) else value


class Key:
    """A private key in a file, and its public half: the whole encoding, and the text of the key lists."""

    def __init__(self, folder, name, kind="RSA:2048"):
        self.file = folder / f"{name}.key"
        options = {"RSA": ("rsa_keygen_bits", "RSA"), "EC": ("ec_paramgen_curve", "EC")}[kind.split(":")[0]]
        run("openssl", "genpkey", "-algorithm", options[1], "-pkeyopt", f"{options[0]}:{kind.split(':')[1]}",
            "-out", self.file)
        self.public = run("openssl", "pkey", "-in", self.file, "-pubout", "-outform", "DER")
        fields = content_of(self.public)[0]
        bits = content_of(fields, content_of(fields)[1])[0]
        self.text = bits[1:].hex(" ")  # the first byte counts unused bits


def days_from_now(days):
    moment = datetime.datetime.now(datetime.timezone.utc) + datetime.timedelta(days=days)
    return tlv(0x17, moment.strftime("%y%m%d%H%M%SZ").encode())


def certificate(key, name, issuer_key, issuer, days=(-1, 3650), usage="codeSigning", is_authority=False):
    """A certificate in PEM. `days` from now is its time; `usage` is what it may be used for, or None for anything."""
    def extension(kind, value):
        return sequence(oid(kind), tlv(0x01, b"\xff"), tlv(0x04, value))

    extensions = [extension("basicConstraints", sequence(tlv(0x01, b"\xff")) if is_authority else sequence()),
                  extension("keyUsage", tlv(0x03, b"\x01\x06" if is_authority else b"\x07\x80"))]
    if usage and not is_authority:
        extensions.append(extension("extendedKeyUsage", sequence(oid(usage))))
    body = sequence(tlv(0xa0, tlv(0x02, b"\x02")), tlv(0x02, b"\x01" + run("openssl", "rand", 15)), SHA256_RSA,
                    issuer.der, sequence(days_from_now(days[0]), days_from_now(days[1])), name.der, key.public,
                    tlv(0xa3, sequence(*extensions)))
    signature = run("openssl", "dgst", "-sha256", "-sign", issuer_key.file, data=body)
    text = base64.encodebytes(sequence(body, SHA256_RSA, tlv(0x03, b"\0", signature))).decode()
    return f"-----BEGIN CERTIFICATE-----\n{text}-----END CERTIFICATE-----\n"


class SignedImage:
    """The bytes of a 64-bit PE file, and its fields that matter for a signature."""

    def __init__(self, source):
        self.bytes = bytearray(pathlib.Path(source).read_bytes() if isinstance(source, pathlib.Path) else source)
        self.header = self.get(0x3c)                      # of the "PE" signature
        self.checksum = self.header + 24 + 64
        self.directory = self.header + 24 + 112 + 4 * 8   # its fourth entry: place and size of the certificate table

    def get(self, at):
        return struct.unpack_from("<I", self.bytes, at)[0]

    def set(self, at, value):
        struct.pack_into("<I", self.bytes, at, value & 0xffffffff)
        return self

    def flip(self, at):
        self.bytes[at] ^= 0x01
        return self

    @property
    def table(self):
        """Where the certificate table begins; its first field is the length of the first entry."""
        return self.get(self.directory)

    @property
    def table_size(self):
        return self.get(self.directory + 4)

    @property
    def code(self):
        """The first byte of the first section."""
        section = self.header + 24 + struct.unpack_from("<H", self.bytes, self.header + 20)[0]
        return self.get(section + 20)

    def digests(self):
        """Where the table holds the SHA-256 digest of the file: once in each signature, the outer one first."""
        marker = bytes.fromhex("300d060960864801650304020105000420")
        found, at = [], self.bytes.find(marker, self.table)
        while at >= 0:
            found.append(at + len(marker))
            at = self.bytes.find(marker, at + 1)
        return found
