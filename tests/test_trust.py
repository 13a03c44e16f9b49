import os
import shutil
import ssl
import subprocess
import unittest

from harness import PAGE_TEXT, ProgramTest
from https_server import EXPIRED, Server, make_certificate

DEBIAN_BUNDLE = "ssl/certs/ca-certificates.crt"
OTHER_BUNDLES = ["pki/ca-trust/extracted/pem/tls-ca-bundle.pem", "ssl/ca-bundle.pem",
                 "pki/tls/certs/ca-bundle.crt", "pki/tls/cacert.pem", "ssl/cert.pem"]
NAMESPACE = ["unshare", "--mount", *([] if os.geteuid() == 0 else ["--map-root-user"])]
TRUSTED = ""
REFUSED = "handshake: certificate verify failed (SSL routines)"


@unittest.skipIf(subprocess.run([*NAMESPACE, "true"], capture_output=True).returncode,
                 "needs a mount namespace")
class Trust(ProgramTest):
    def setUp(self):
        super().setUp()
        self.make_chain()
        make_certificate(self.home, "single")
        (self.home / "none.pem").touch()

    def make_chain(self, suffix="", root={}, issuer={}, leaf={}):
        make_certificate(self.home, f"root{suffix}", kind="authority", **root)
        make_certificate(self.home, f"issuer{suffix}", f"root{suffix}", "authority", **issuer)
        make_certificate(self.home, f"leaf{suffix}", f"issuer{suffix}", **leaf)

    def fetch(self, chain, openssl="none", etc={}, **options):
        """What a blocking run says of a server that sends the chain, while OpenSSL's own file is
        the one named and /etc holds the files named, by place; TRUSTED if it prints the page."""
        self.environment["SSL_CERT_FILE"] = f"{self.home}/{openssl}.pem"
        folder = self.home / "etc"
        shutil.rmtree(folder, ignore_errors=True)
        for place, name in etc.items():
            (folder / place).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(self.home / f"{name}.pem", folder / place)
        folder.mkdir(exist_ok=True)
        shutil.copy("/etc/hosts", folder)
        mount = f'mount --bind {folder} /etc && exec "$@"'
        with Server(self.home, chain.split(), **options) as server:
            status, output, errors = self.run_page("--blocking", "--debug", port=server.port,
                                                   prefix=[*NAMESPACE, "sh", "-c", mount, "sh"])
        self.assertEqual((status, output.endswith(PAGE_TEXT)), (0, not errors), errors)
        return errors

    def test_a_chain_is_accepted_by_openssl_or_else_by_the_platform(self):
        self.make_chain("-expired", leaf={"validity": EXPIRED})
        self.make_chain("-of-old-root", root={"validity": EXPIRED})
        self.make_chain("-of-weak-root", root={"key": "rsa:512"})
        self.make_chain("-of-weak-issuer", issuer={"digest": "sha1"})
        for chain, openssl, platform, verdict in [
                ("leaf issuer", "root", "none", TRUSTED),
                ("leaf issuer", "nowhere", "root", TRUSTED),
                ("leaf issuer root", "nowhere", "root", TRUSTED),
                ("leaf issuer", "nowhere", "leaf", TRUSTED),
                ("leaf issuer", "nowhere", "none", REFUSED),
                ("leaf", "nowhere", "issuer", REFUSED),  # no issuer at hand: OpenSSL's no is final
                ("single", "nowhere", "single", TRUSTED),
                ("single", "nowhere", "root", REFUSED),
                ("leaf-expired issuer-expired", "root-expired", "root-expired", REFUSED),
                ("leaf-of-old-root issuer-of-old-root", "nowhere", "root-of-old-root", REFUSED),
                ("leaf-of-weak-root issuer-of-weak-root", "nowhere", "root-of-weak-root", REFUSED),
                ("leaf-of-weak-issuer issuer-of-weak-issuer", "nowhere", "root-of-weak-issuer",
                 REFUSED)]:
            with self.subTest(chain=chain, openssl=openssl, platform=platform):
                errors = self.fetch(chain, openssl, {DEBIAN_BUNDLE: platform})
                self.assertEqual(errors[:len(REFUSED)], verdict)

    def test_the_platform_trusts_what_its_first_bundle_or_else_its_folder_holds(self):
        (self.home / "garbage.pem").write_text("-----BEGIN CERTIFICATE-----\n!\n")
        name = subprocess.run(["openssl", "x509", "-hash", "-noout", "-in", "root.pem"],
                              cwd=self.home, capture_output=True, check=True, text=True).stdout
        hashed = f"ssl/certs/{name.strip()}.0"
        for etc, verdict in [
                *[({place: "root"}, TRUSTED) for place in [DEBIAN_BUNDLE, *OTHER_BUNDLES, hashed]],
                *[({DEBIAN_BUNDLE: "none", place: "root"}, REFUSED)
                  for place in [*OTHER_BUNDLES, hashed]],
                ({DEBIAN_BUNDLE: "garbage"}, REFUSED),
                ({hashed: "garbage"}, REFUSED),
                ({}, REFUSED)]:
            with self.subTest(etc=etc):
                self.assertEqual(self.fetch("leaf issuer", etc=etc)[:len(REFUSED)], verdict)

    def test_no_version_but_tls_1_2_is_spoken(self):
        for version in ssl.TLSVersion.TLSv1_1, ssl.TLSVersion.TLSv1_3:
            with self.subTest(version=version.name):
                errors = self.fetch("leaf issuer", "root", version=version)
                self.assertRegex(errors, r"\Ahandshake: .*protocol")
