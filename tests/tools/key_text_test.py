#!/usr/bin/env python3
"""key-text prints the public key of certificates, keys and signed files as openssl writes it, and refuses everything
else with one line and a status other than 0.

key_text_test.py KEY_TEXT"""

import functools
import pathlib
import struct
import subprocess
import sys
import tempfile
import unittest

KEY_TEXT = sys.argv.pop()


def openssl(*arguments, data=None):
    return subprocess.run(["openssl", *arguments], input=data, check=True, capture_output=True).stdout


@functools.cache
def line_of(private_key):
    """The line of a private key's public half, by openssl alone."""
    return openssl("rsa", "-in", private_key, "-RSAPublicKey_out", "-outform", "DER").hex(" ") + "\n"


@functools.cache
def an_executable():
    """The path of an unsigned library in the PE format: one of the cross-compiler's own."""
    compiler = "x86_64-w64-mingw32-gcc-posix"
    answer = subprocess.run([compiler, "-print-file-name=libwinpthread-1.dll"], check=True, capture_output=True, text=True)
    return answer.stdout.strip()


SCRATCH = tempfile.TemporaryDirectory()


def setUpModule():
    # Three signers of 2048 bits: the second has the serial number of the first, the third its name.
    for name, subject, serial in (("first", "/CN=A", "7"), ("second", "/CN=B", "7"), ("third", "/CN=A", "8")):
        file = pathlib.Path(SCRATCH.name, name)
        openssl("req", "-x509", "-newkey", "rsa:2048", "-nodes", "-subj", subject, "-set_serial", serial, "-days", "9",
                "-addext", "extendedKeyUsage=codeSigning", "-keyout", f"{file}.key", "-out", f"{file}.pem")  # fmt: skip


def tearDownModule():
    SCRATCH.cleanup()


class KeyTextTest(unittest.TestCase):
    folder = pathlib.Path(SCRATCH.name)

    def key(self, name):
        return self.folder / f"{name}.key"

    def certificate(self, name):
        return self.folder / f"{name}.pem"

    def save(self, data):
        file = self.folder / "input"
        file.write_bytes(data)
        return file

    def sign(self, source, name, target, *options, others=()):
        """A copy of a file with the signature of a signer, which also contains the certificates of others."""
        chain = self.folder / "chain.pem"
        chain.write_bytes(b"".join(self.certificate(one).read_bytes() for one in (name, *others)))
        result = self.folder / target
        result.unlink(missing_ok=True)
        subprocess.run(["osslsigncode", "sign", "-h", "sha256", *options, "-certs", chain, "-key", self.key(name),
                        "-in", source, "-out", result], check=True, capture_output=True)  # fmt: skip
        return result

    def run_tool(self, *arguments, data=None):
        return subprocess.run([KEY_TEXT, *arguments], input=data, capture_output=True)

    def assert_lines(self, file, *names):
        run = self.run_tool(file)
        self.assertEqual(run.stderr, b"")
        self.assertEqual(run.returncode, 0)
        self.assertEqual(run.stdout.decode(), "".join(line_of(self.key(name)) for name in names))

    def assert_refused(self, file, reason):
        run = self.run_tool(file)
        self.assertEqual(run.stdout, b"")
        self.assertEqual(run.stderr.decode(), f"key-text: {file}: {reason}\n")
        self.assertEqual(run.returncode, 1)


class Certificates(KeyTextTest):
    def test_in_pem_and_der(self):
        for name in ("first", "second", "third"):
            self.assert_lines(self.certificate(name), name)
            self.assert_lines(self.save(openssl("x509", "-in", self.certificate(name), "-outform", "DER")), name)

    def test_of_version_1(self):
        # Without the version field that begins the others.
        request = openssl("req", "-new", "-key", self.key("first"), "-subj", "/CN=Old")
        old = openssl("x509", "-req", "-signkey", self.key("first"), "-days", "9", data=request)
        self.assertIn(b"Version: 1 (0x0)", openssl("x509", "-noout", "-text", data=old))
        self.assert_lines(self.save(old), "first")

    def test_of_openssls_own_form(self):
        self.assert_lines(self.save(openssl("x509", "-in", self.certificate("first"), "-trustout")), "first")

    def test_the_first_of_a_chain_counts(self):
        chain = self.certificate("second").read_bytes() + self.certificate("first").read_bytes()
        self.assert_lines(self.save(chain), "second")

    def test_with_text_before_it_and_line_ends_of_windows(self):
        text = openssl("x509", "-in", self.certificate("first"), "-text")
        self.assertIn(b"Certificate:\n", text)
        self.assert_lines(self.save(text.replace(b"\n", b"\r\n")), "first")

    def test_from_standard_input(self):
        run = self.run_tool("-", data=self.certificate("first").read_bytes())
        self.assertEqual(run.stdout.decode(), line_of(self.key("first")))


class Keys(KeyTextTest):
    def test_private_in_both_forms(self):
        # Of several keys: numbers of exactly 128 bytes do not occur in each.
        for name in ("first", "second", "third"):
            self.assertIn(b"BEGIN PRIVATE KEY", self.key(name).read_bytes())
            self.assert_lines(self.key(name), name)
            traditional = openssl("rsa", "-in", self.key(name), "-traditional")
            self.assertIn(b"BEGIN RSA PRIVATE KEY", traditional)
            self.assert_lines(self.save(traditional), name)

    def test_public_in_both_forms(self):
        for option, label in (("-pubout", b"BEGIN PUBLIC KEY"), ("-RSAPublicKey_out", b"BEGIN RSA PUBLIC KEY")):
            public = openssl("rsa", "-in", self.key("first"), option)
            self.assertIn(label, public)
            self.assert_lines(self.save(public), "first")

    def test_of_3072_bits(self):
        self.key("long").write_bytes(openssl("genrsa", "3072"))
        self.assert_lines(self.key("long"), "long")
        self.assertEqual(len(self.run_tool(self.key("long")).stdout), 1193 + 1)

    def test_of_other_sizes_are_refused(self):
        for bits in ("1024", "2056"):
            reason = f"its key has {bits} bits, but the key lists have positions for 2048 and 3072 bits only"
            self.assert_refused(self.save(openssl("genrsa", bits)), reason)

    def test_with_another_exponent_are_refused(self):
        reason = "its key has the exponent 3, but the key lists need 65537"
        self.assert_refused(self.save(openssl("genrsa", "-3", "2048")), reason)

    def test_of_another_algorithm_are_refused(self):
        private = openssl("genpkey", "-algorithm", "EC", "-pkeyopt", "ec_paramgen_curve:P-256")
        for key in (private, openssl("pkey", "-pubout", data=private)):
            self.assert_refused(self.save(key), "its key is not an RSA key")

    def test_with_a_password_are_refused(self):
        reason = "the key has a password: use its certificate or public key"
        secret = ["-aes128", "-passout", "pass:secret"]
        self.assert_refused(self.save(openssl("rsa", "-in", self.key("first"), *secret)), reason)
        self.assert_refused(self.save(openssl("rsa", "-in", self.key("first"), *secret, "-traditional")), reason)


class SignedFiles(KeyTextTest):
    def test_with_one_signature(self):
        self.assert_lines(self.sign(an_executable(), "first", "signed.dll"), "first")

    def test_the_signers_certificate_is_found_among_others(self):
        # Its serial number alone, or its issuer alone, would match another one.
        for others in (("second", "third"), ("third", "second")):
            self.assert_lines(self.sign(an_executable(), "first", "signed.dll", others=others), "first")
        self.assert_lines(self.sign(an_executable(), "third", "signed.dll", others=("first", "second")), "third")
        self.assert_lines(self.sign(an_executable(), "second", "signed.dll", others=("first", "third")), "second")

    def test_with_nested_signatures(self):
        once = self.sign(an_executable(), "second", "once.dll")
        twice = self.sign(once, "first", "twice.dll", "-nest")
        self.assert_lines(twice, "second", "first")

    def test_a_signature_on_its_own(self):
        # The form of a security catalog.
        signed = self.sign(an_executable(), "first", "signed.dll")
        alone = self.folder / "signature.der"
        subprocess.run(["osslsigncode", "extract-signature", "-in", signed, "-out", alone], check=True, capture_output=True)
        self.assert_lines(alone, "first")
        alone.unlink()

    def test_of_32_bits_with_two_signatures_in_its_table(self):
        names, table = ("third", "first"), b""
        for name in names:
            data = self.sign(an_executable(), name, "signed.dll").read_bytes()
            header = struct.unpack_from("<I", data, 0x3C)[0]
            at, size = struct.unpack_from("<II", data, header + 24 + 112 + 32)
            length = struct.unpack_from("<I", data, at)[0]
            self.assertLess(length, size + 1)
            entry = data[at : at + length]
            table += entry + bytes(-length % 8)
        # An entry that is no signature of this kind, of an odd length.
        table = struct.pack("<IHH", 9, 0x200, 1) + bytes(8) + table
        header = b"PE\0\0" + bytes(20) + struct.pack("<H", 0x10B) + bytes(94)
        directories = bytes(32) + struct.pack("<II", 512, len(table)) + bytes(88)
        data = b"MZ" + bytes(0x3A) + struct.pack("<I", 0x40) + header + directories
        self.assert_lines(self.save(data.ljust(512, b"\0") + table), *names)

    def test_without_a_signature_are_refused(self):
        file = self.folder / "unsigned.dll"
        file.write_bytes(pathlib.Path(an_executable()).read_bytes())
        self.assert_refused(file, "it has no signature")

    def test_without_the_signers_certificate_are_refused(self):
        signature = openssl("cms", "-sign", "-nodetach", "-nocerts", "-outform", "DER", "-signer", self.certificate("first"),
                            "-inkey", self.key("first"), data=b"text")  # fmt: skip
        self.assert_refused(self.save(signature), "its signature does not contain the signer's certificate")

    def test_cut_off_are_refused(self):
        data = self.sign(an_executable(), "first", "signed.dll").read_bytes()
        self.assert_refused(self.save(data[:-8]), "its signature is cut off")
        self.assert_refused(self.save(data[:40]), "it is cut off")
        self.assert_refused(self.save(data[:0x3C] + bytes(4) + data[0x40:]), "it begins like an executable, but is not one")


class OtherFiles(KeyTextTest):
    def test_are_refused(self):
        der = openssl("x509", "-in", self.certificate("first"), "-outform", "DER")
        pem = self.certificate("first").read_bytes()
        for data, reason in (
            (b"", "it is not a certificate, a key or a signed file"),
            (b"hello\n", "it is not a certificate, a key or a signed file"),
            (der[:-1], "it is cut off"),
            (der[:1], "it is cut off"),
            (bytes.fromhex("3003020101"), "it has another form than expected"),
            (bytes.fromhex("3000"), "it has another form than expected"),
            (pem.replace(b"\nMII", b"\n*MII"), "its PEM text is damaged"),
            (pem.replace(b"END", b"AND"), "its PEM text has no certificate and no RSA key"),
            (b"-----BEGIN DH PARAMETERS-----\nMAA=\n-----END DH PARAMETERS-----\n",
             "its PEM text has no certificate and no RSA key"),
        ):  # fmt: skip
            self.assert_refused(self.save(data), reason)

    def test_that_do_not_exist_are_refused(self):
        self.assert_refused(self.folder / "missing", "No such file or directory")
        self.assert_refused(self.folder, "Is a directory")

    def test_wrong_arguments_show_how_to_call_it(self):
        for arguments, status in (((), 2), (("a", "b"), 2), (("--help",), 0)):
            run = self.run_tool(*arguments)
            self.assertIn(b"key-text FILE: ", run.stdout)
            self.assertEqual(run.returncode, status)


if __name__ == "__main__":
    unittest.main()
