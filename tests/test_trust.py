"""Who is believed, by OpenSSL's own trust and by the platform's, which is read from /etc."""
import ssl

from pytest import fixture, mark, param

from program import RELEASE, TESTS, available

BUNDLES = ["ssl/certs/ca-certificates.crt", "pki/ca-trust/extracted/pem/tls-ca-bundle.pem",
           "ssl/ca-bundle.pem", "pki/tls/certs/ca-bundle.crt", "pki/tls/cacert.pem", "ssl/cert.pem"]
IN_DIRECTORY = "ssl/certs/dcaaf7f0.0"  # where OpenSSL looks "root" up, by "openssl x509 -hash"
NOBODY = "unusable"  # can be read, holds no certificate


@fixture
def check(user, serve, certificates):
    """Checks whether a run believes a server that sends chain, where OpenSSL trusts the certificate
    that is named and the platform those that are named by their place in /etc."""
    def check(believed, chain, openssl, platform, **server):
        user.environment["SSL_CERT_FILE"] = f"{certificates}/{openssl}.pem"
        etc = ["bwrap", "--dev-bind", "/", "/", "--tmpfs", "/etc"]
        for place, name in platform.items():
            etc += ["--ro-bind", certificates / f"{name}.pem", f"/etc/{place}"]
        port = serve(chain=chain, **server).port
        result = user.run_page("--blocking", "--debug", port=port, before=available(*etc))
        assert result.stdout.endswith(RELEASE) == believed
        assert result.stderr == "" if believed else result.stderr.startswith("handshake: ")

    return check


@mark.platform
@mark.parametrize("believed, chain, platform", [
    param(True, "server issuer root", "root", id="yes: a root that the server sends, too"),
    param(True, "server issuer", "server", id="yes: a server that it lists"),
    param(True, "self-signed", "self-signed", id="yes: a self-signed server that it lists"),
    param(False, "weak-server weak-issuer", "weak-root", id="no: a root with RSA-1024"),
    param(False, "server issuer", "expired-root", id="no: an expired root"),
    param(False, "server", "issuer", id="no: a server that sends no issuer"),
    param(False, "server issuer root", "self-signed", id="no: a root that nobody trusts"),
])
def test_whom_the_platform_believes_where_openssl_knows_no_issuer(check, believed, chain, platform):
    check(believed, chain, NOBODY, {BUNDLES[0]: platform})


@mark.parametrize("openssl", ["expired-root", "forged/root", param("issuer", id="no root of it")])
def test_where_openssl_knows_an_issuer_that_fails_the_platform_is_not_asked(check, openssl):
    check(False, "server issuer", openssl, {BUNDLES[0]: "root"})


@mark.filterwarnings("ignore:ssl.TLSVersion.TLSv1_1")
@mark.parametrize("version", ["TLSv1_1", "TLSv1_3"])
def test_only_tls_1_2_is_spoken(user, check, version):
    user.environment["OPENSSL_CONF"] = f"{TESTS}/lenient.cnf"
    check(False, "server issuer", "root", {}, version=ssl.TLSVersion[version])


@mark.parametrize("file", ["no such file", "lenient.cnf"])
def test_only_a_lenient_configuration_file_of_openssl_allows_weak_keys(user, check, file):
    user.environment["OPENSSL_CONF"] = f"{TESTS}/{file}"
    check(file == "lenient.cnf", "weak-server weak-issuer", "weak-root", {})


@mark.parametrize("place", [*BUNDLES, param(IN_DIRECTORY, id="the directory")])
def test_the_platform_trusts_what_a_bundle_or_else_its_directory_holds(check, place):
    check(True, "server issuer", NOBODY, {place: "root"})


def test_nothing_but_the_first_bundle_counts(check):
    platform = {BUNDLES[0]: "unusable", BUNDLES[1]: "root", IN_DIRECTORY: "root"}
    check(False, "server issuer", NOBODY, platform)
