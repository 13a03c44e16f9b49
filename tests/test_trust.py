"""Who is believed. The program runs with an /etc of its own, where the platform's trust lies."""
import shutil
import ssl
import subprocess

from pytest import fixture, mark, param, skip

from conftest import PROGRAM, RELEASE

BUNDLES = ["ssl/certs/ca-certificates.crt", "pki/ca-trust/extracted/pem/tls-ca-bundle.pem",
           "ssl/ca-bundle.pem", "pki/tls/certs/ca-bundle.crt", "pki/tls/cacert.pem", "ssl/cert.pem"]
IN_DIRECTORY = "ssl/certs/dcaaf7f0.0"  # "openssl x509 -hash" tells this name of the root
REFUSED = "handshake: certificate verify failed"


@fixture
def fetch(tool, serve, certificates):
    """Fetches from a server that sends a chain, while OpenSSL and the platform trust certificates."""
    etc = tool.home / "etc"
    etc.mkdir()
    shutil.copy("/etc/hosts", etc)
    own_etc = ["--dev-bind", "/", "/", "--bind", etc, "/etc"]
    if subprocess.run(["bwrap", *own_etc, "true"]).returncode:
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


@mark.parametrize("errors, chain, openssl, platform", [
    param("", "server issuer root", "nowhere", "root", id="an authority only the platform trusts"),
    param("", "server issuer", "nowhere", "server", id="a server that the platform itself trusts"),
    param("", "self-signed", "nowhere", "self-signed", id="a self-signed one, in the same way"),
    param("", "rsa-server rsa-issuer", "nowhere", "rsa-root", id="an RSA key of 2048 bits"),
    param(REFUSED, "weak-server weak-issuer", "nowhere", "weak-root", id="one of 1024 bits"),
    param(REFUSED, "server issuer", "nowhere", "self-signed", id="whom nobody trusts"),
    param(REFUSED, "server", "nowhere", "issuer", id="whose issuer was not sent"),
    param(REFUSED, "expired-server issuer", "root", "root", id="an expired server"),
    param(REFUSED, "old-server old-issuer", "nowhere", "old-root", id="an expired authority"),
])
def test_who_is_believed(fetch, errors, chain, openssl, platform):
    result = fetch(chain, openssl, {BUNDLES[0]: platform})
    assert result.errors[:len(REFUSED)] == errors


@mark.parametrize("place", [*BUNDLES, IN_DIRECTORY])
def test_the_platform_trusts_what_a_bundle_or_else_its_directory_holds(fetch, place):
    assert fetch("server issuer", "nowhere", {place: "root"}).errors == ""


def test_nothing_but_the_first_bundle_counts(fetch):
    platform = {BUNDLES[0]: "self-signed", BUNDLES[1]: "root", IN_DIRECTORY: "root"}
    assert fetch("server issuer", "nowhere", platform).errors.startswith(REFUSED)


@mark.parametrize("version", [ssl.TLSVersion.TLSv1_1, ssl.TLSVersion.TLSv1_3])
def test_no_version_but_tls_1_2_is_spoken(fetch, version):
    result = fetch("server issuer", "root", {}, version=version)
    assert result.errors.startswith("handshake: ")
    assert "protocol" in result.errors


@mark.macos
@mark.parametrize("step", ["data", "certificate", "array", "trust"])
def test_nobody_is_believed_when_a_step_of_macos_fails(tool, fetch, step):
    tool.environment[step] = "fails"
    assert fetch("server issuer", "nowhere", {BUNDLES[0]: "root"}).errors.startswith(REFUSED)
