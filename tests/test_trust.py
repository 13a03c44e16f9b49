"""Who is believed. The program runs with an /etc of its own, where the platform's trust lies."""
import shutil
import ssl
import subprocess

from pytest import fixture, mark, param, skip

from conftest import PROGRAM, RELEASE

BUNDLES = ["ssl/certs/ca-certificates.crt", "pki/ca-trust/extracted/pem/tls-ca-bundle.pem",
           "ssl/ca-bundle.pem", "pki/tls/certs/ca-bundle.crt", "pki/tls/cacert.pem", "ssl/cert.pem"]
IN_DIRECTORY = "ssl/certs/dcaaf7f0.0"  # where OpenSSL looks the root up: "openssl x509 -hash"
REFUSED = "handshake: certificate verify failed"


@fixture
def fetch(tool, serve, certificates):
    """Fetches from a server that sends chain; OpenSSL and the platform trust what is named."""
    etc = tool.home / "etc"
    etc.mkdir()
    shutil.copy("/etc/hosts", etc)  # tells where localhost is
    own_etc = ["--dev-bind", "/", "/", "--bind", etc, "/etc"]
    if not shutil.which("bwrap") or subprocess.run(["bwrap", *own_etc, "true"]).returncode:
        skip("needs a mount namespace of Linux")

    def fetch(chain, openssl, platform, **options):
        tool.environment["SSL_CERT_FILE"] = f"{certificates}/{openssl}.pem"
        for place, name in platform.items():
            (etc / place).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(certificates / f"{name}.pem", etc / place)
        port = serve(chain=chain.split(), **options).port
        result = tool.run(*own_etc, PROGRAM, "--blocking", "--debug", "--host=localhost",
                          "--port", port, "/page", program="bwrap")
        assert result.status == 0
        assert result.output.endswith(RELEASE) == (result.errors == "")
        return result

    return fetch


@mark.parametrize("chain, openssl, platform, errors", [
    param("server issuer root", "nowhere", "root", "", id="yes: a root of the platform"),
    param("server issuer", "nowhere", "server", "", id="yes: a server of the platform"),
    param("self-signed", "nowhere", "self-signed", "", id="yes: its self-signed server"),
    param("rsa-server rsa-issuer", "nowhere", "rsa-root", "", id="yes: a 2048-bit RSA root"),
    param("weak-server weak-issuer", "nowhere", "weak-root", REFUSED, id="no: a 1024-bit RSA root"),
    param("server issuer", "nowhere", "self-signed", REFUSED, id="no: a root that nobody trusts"),
    param("server", "nowhere", "issuer", REFUSED, id="no: a server that sends no issuer"),
    param("expired-server issuer", "root", "root", REFUSED, id="no: an expired server"),
    param("old-server old-issuer", "nowhere", "old-root", REFUSED, id="no: an expired root"),
])
def test_who_is_believed(fetch, chain, openssl, platform, errors):
    result = fetch(chain, openssl, {BUNDLES[0]: platform})
    assert result.errors[:len(REFUSED)] == errors


@mark.parametrize("place", [*BUNDLES, IN_DIRECTORY])
def test_the_platform_trusts_what_a_bundle_or_else_its_directory_holds(fetch, place):
    assert fetch("server issuer", "nowhere", {place: "root"}).errors == ""


def test_nothing_but_the_first_bundle_counts(fetch):
    platform = {BUNDLES[0]: "self-signed", BUNDLES[1]: "root", IN_DIRECTORY: "root"}
    assert fetch("server issuer", "nowhere", platform).errors.startswith(REFUSED)


@mark.parametrize("version", [ssl.TLSVersion.TLSv1_1, ssl.TLSVersion.TLSv1_3], ids=["1.1", "1.3"])
def test_no_version_but_tls_1_2_is_spoken(fetch, version):
    result = fetch("server issuer", "root", {}, version=version)
    assert result.errors.startswith("handshake: ")
    assert "protocol" in result.errors


@mark.macos
@mark.parametrize("step", ["data", "certificate", "array", "trust"])
def test_nobody_is_believed_when_a_step_of_macos_fails(tool, fetch, step):
    tool.environment[step] = "fails"  # see macos/CoreFoundation/CoreFoundation.h
    assert fetch("server issuer", "nowhere", {BUNDLES[0]: "root"}).errors.startswith(REFUSED)
