import os
import shutil
import ssl
import subprocess
import unittest
from unittest import mock

from harness import PAGE_TEXT, PROGRAM, ProgramTest
from https_server import EXPIRED, Server, make_certificate

BUNDLES = ["ssl/certs/ca-certificates.crt", "pki/ca-trust/extracted/pem/tls-ca-bundle.pem",
           "ssl/ca-bundle.pem", "pki/tls/certs/ca-bundle.crt", "pki/tls/cacert.pem", "ssl/cert.pem"]
NAMESPACE = "unshare --mount" + (" --map-root-user" if os.geteuid() else "")
TRUSTED = ""
REFUSED = "handshake: certificate verify failed (SSL routines)"


class Trust(ProgramTest):
    @classmethod
    def setUpClass(cls):
        if subprocess.run(f"{NAMESPACE} true", shell=True, capture_output=True).returncode:
            raise unittest.SkipTest("needs a mount namespace of Linux")

    def setUp(self):
        super().setUp()
        for suffix, root, issuer in [("", {}, {}),
                                     ("-of-old-root", {"validity": EXPIRED}, {}),
                                     ("-of-weak-root", {"key": "rsa:1024"}, {}),
                                     ("-of-weak-issuer", {}, {"digest": "sha1"})]:
            make_certificate(self.home, "root" + suffix, kind="authority", **root)
            make_certificate(self.home, "issuer" + suffix, "root" + suffix, "authority", **issuer)
            make_certificate(self.home, "leaf" + suffix, "issuer" + suffix)
        make_certificate(self.home, "expired", "issuer", validity=EXPIRED)
        make_certificate(self.home, "single")
        (self.home / "none.pem").touch()
        (self.home / "garbage.pem").write_text("-----BEGIN CERTIFICATE-----\n!\n")
        self.in_namespace = self.home / "in_namespace"
        self.in_namespace.write_text(
            f"#!/bin/sh\nexec {NAMESPACE} sh -c 'mount --bind {self.home}/etc /etc && "
            f"exec \"{PROGRAM}\" \"$@\"' sh \"$@\"\n")
        self.in_namespace.chmod(0o755)

    def verdict(self, chain, openssl, etc, **options):
        """The error of a run while OpenSSL's file and /etc hold these certificates, or TRUSTED."""
        self.environment["SSL_CERT_FILE"] = f"{self.home}/{openssl}.pem"
        folder = self.home / "etc"
        shutil.rmtree(folder, ignore_errors=True)
        for place, name in etc.items():
            (folder / place).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(self.home / f"{name}.pem", folder / place)
        folder.mkdir(exist_ok=True)
        shutil.copy("/etc/hosts", folder)
        with Server(self.home, chain.split(), **options) as server:
            status, output, errors = self.run_page("--blocking", "--debug", port=server.port,
                                                   program=self.in_namespace)
        self.assertEqual((status, output.endswith(PAGE_TEXT)), (0, not errors), errors)
        return errors[:len(REFUSED)]

    def test_a_chain_is_accepted_by_openssl_or_else_by_the_platform(self):
        for chain, openssl, platform, verdict in [
                ("leaf issuer", "root", "none", TRUSTED),
                ("leaf issuer", "nowhere", "root", TRUSTED),
                ("leaf issuer root", "nowhere", "root", TRUSTED),
                ("leaf issuer", "nowhere", "leaf", TRUSTED),
                ("leaf issuer", "nowhere", "none", REFUSED),
                ("leaf", "nowhere", "issuer", REFUSED),  # no issuer at hand: OpenSSL's no is final
                ("single", "nowhere", "single", TRUSTED),
                ("single", "nowhere", "root", REFUSED),
                ("expired issuer", "root", "root", REFUSED),
                *[(f"leaf{suffix} issuer{suffix}", "nowhere", f"root{suffix}", REFUSED)
                  for suffix in ["-of-old-root", "-of-weak-root", "-of-weak-issuer"]]]:
            with self.subTest(chain=chain, openssl=openssl, platform=platform):
                self.assertEqual(self.verdict(chain, openssl, {BUNDLES[0]: platform}), verdict)

    def test_the_platform_trusts_what_its_first_bundle_or_else_its_folder_holds(self):
        name = subprocess.run(["openssl", "x509", "-hash", "-noout", "-in", "root.pem"],
                              cwd=self.home, capture_output=True, check=True, text=True).stdout
        hashed = f"ssl/certs/{name.strip()}.0"
        for etc, verdict in [
                *[({place: "root"}, TRUSTED) for place in [*BUNDLES, hashed]],
                *[({BUNDLES[0]: "none", place: "root"}, REFUSED) for place in [BUNDLES[1], hashed]],
                *[({place: "garbage"}, REFUSED) for place in [BUNDLES[0], hashed]],
                ({}, REFUSED)]:
            with self.subTest(etc=etc):
                self.assertEqual(self.verdict("leaf issuer", "nowhere", etc), verdict)

    def test_no_version_but_tls_1_2_is_spoken(self):
        for version in ssl.TLSVersion.TLSv1_1, ssl.TLSVersion.TLSv1_3:
            with self.subTest(version.name):
                self.assertRegex(self.verdict("leaf issuer", "root", {}, version=version),
                                 r"\Ahandshake: .*protocol")


class TrustOnMacos(Trust):
    def test_a_chain_is_not_trusted_when_an_object_cannot_be_made(self):
        for kind in "data", "certificate", "chain", "trust":
            with self.subTest(kind), mock.patch.dict(self.environment, {kind: "refused"}):
                self.assertEqual(self.verdict("leaf issuer", "nowhere", {BUNDLES[0]: "root"}),
                                 REFUSED)
