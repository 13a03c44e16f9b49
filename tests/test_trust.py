import os
import ssl
import subprocess
import unittest

from harness import PAGE_TEXT, ProgramTest
from https_server import Server, make_certificate

PLATFORM_BUNDLE = "/etc/ssl/certs/ca-certificates.crt"
NAMESPACE = ["unshare", "--mount", *([] if os.geteuid() == 0 else ["--map-root-user"])]


@unittest.skipIf(subprocess.run([*NAMESPACE, "true"], capture_output=True).returncode,
                 "needs a mount namespace")
class Trust(ProgramTest):
    def setUp(self):
        super().setUp()
        make_certificate(self.home, "root", kind="authority")
        make_certificate(self.home, "issuer", issuer="root", kind="authority")
        make_certificate(self.home, "leaf", issuer="issuer")
        make_certificate(self.home, "expired", issuer="issuer", days=-1)
        make_certificate(self.home, "single")
        (self.home / "none.pem").touch()

    def fetch(self, chain, openssl_trusts, platform_trusts, **options):
        """Fetches from a server that sends the chain, while the two stores hold what is named."""
        self.environment["SSL_CERT_FILE"] = f"{self.home}/{openssl_trusts}.pem"
        mount = f'mount --bind {self.home}/{platform_trusts}.pem {PLATFORM_BUNDLE} && exec "$@"'
        with Server(self.home, chain.split(), **options) as server:
            return self.run_page("--blocking", "--debug", port=server.port,
                                 prefix=[*NAMESPACE, "sh", "-c", mount, "sh"])

    def test_a_chain_is_accepted_by_openssl_or_else_by_the_platform(self):
        for chain, openssl_trusts, platform_trusts, trusted in [
                ("leaf issuer", "root", "none", True),
                ("leaf issuer", "nowhere", "root", True),
                ("leaf issuer root", "nowhere", "root", True),
                ("leaf issuer", "nowhere", "leaf", True),
                ("leaf issuer", "nowhere", "none", False),
                ("leaf", "nowhere", "issuer", False),  # no issuer at hand: OpenSSL's no is final
                ("single", "nowhere", "single", True),
                ("single", "nowhere", "root", False),
                ("expired issuer", "root", "root", False)]:
            _, output, errors = self.fetch(chain, openssl_trusts, platform_trusts)
            case = f"{chain}, {openssl_trusts}, {platform_trusts}"
            self.assertEqual(output.endswith(PAGE_TEXT), trusted, case)
            self.assertRegex(errors, r"\A\Z" if trusted else
                             r"\Ahandshake: certificate verify failed \(SSL routines\) ", case)

    def test_no_version_but_tls_1_2_is_spoken(self):
        for version in ssl.TLSVersion.TLSv1_1, ssl.TLSVersion.TLSv1_3:
            _, _, errors = self.fetch("leaf issuer", "root", "none", version=version)
            self.assertRegex(errors, r"\Ahandshake: .*protocol")
