"""Who is believed, by OpenSSL's own trust and by the platform's, which is read from /etc."""
import shutil
import ssl

from pytest import fixture, mark, param

from program import HOST, RELEASE, namespace

BUNDLES = ["ssl/certs/ca-certificates.crt", "pki/ca-trust/extracted/pem/tls-ca-bundle.pem",
           "ssl/ca-bundle.pem", "pki/tls/certs/ca-bundle.crt", "pki/tls/cacert.pem", "ssl/cert.pem"]
IN_DIRECTORY = "ssl/certs/dcaaf7f0.0"  # where OpenSSL looks the root up: "openssl x509 -hash"
NOBODY = "no file of this name"


@fixture
def fetch(user, serve, certificates):
    """Fetches from a server that sends chain, and tells whether it was believed.

    OpenSSL trusts the certificate that is named. The platform trusts another, or others by place,
    in an /etc of the program's own; by default, what this machine trusts.
    """
    def own_etc(platform, port):
        etc = user.home / "etc"
        places = platform if isinstance(platform, dict) else {BUNDLES[0]: platform}
        for place, name in places.items():
            (etc / place).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(certificates / f"{name}.pem", etc / place)
        (etc / "hosts").write_text(f"::1 qmb.test\n{HOST} qmb.test\n")  # nobody listens at ::1
        (etc / "host.conf").write_text("multi on\n")  # both addresses count
        (etc / "services").write_text(f"qmb {port}/tcp\n")
        bwrap = namespace("bwrap", "--dev-bind", "/", "/", "--bind", etc, "/etc")
        return {"before": bwrap, "host": "qmb.test", "port": "qmb"}

    def fetch(chain, openssl, platform=None, **server):
        port = serve(chain=chain.split(), **server).port
        user.environment |= {"SSL_CERT_DIR": "/none",
                             "SSL_CERT_FILE": f"{certificates}/{openssl}.pem"}
        where = own_etc(platform, port) if platform else {"port": port}
        result = user.run_page("--blocking", "--debug", **where)
        believed = not result.errors
        assert result.output.endswith(RELEASE) == believed
        assert believed or result.errors.startswith("handshake: ")
        return believed

    return fetch


@mark.parametrize("believed, chain, openssl, platform", [
    param(True, "server issuer", "root", "self-signed", id="yes: a root of OpenSSL"),
    param(True, "server issuer root", NOBODY, "root", id="yes: a root of the platform"),
    param(True, "server issuer", NOBODY, "server", id="yes: a server that the platform lists"),
    param(True, "self-signed", NOBODY, "self-signed", id="yes: self-signed, on the platform"),
    param(False, "weak-server weak-issuer", NOBODY, "weak-root", id="no: platform root, RSA-1024"),
    param(False, "server issuer", NOBODY, "expired-root", id="no: an expired root of the platform"),
    param(False, "server", NOBODY, "issuer", id="no: a server that sends no issuer"),
    param(False, "server issuer", "expired-root", "root", id="no: OpenSSL's root has expired"),
    param(False, "server issuer", "future-root", "root", id="no: OpenSSL's root is not valid yet"),
    param(False, "server issuer", "forged/root", "root", id="no: OpenSSL's root has another key"),
    param(False, "server issuer root", NOBODY, None, id="no: a root that nobody trusts"),
    param(False, "expired-server issuer", "root", None, id="no: an expired server"),
    param(False, "weak-server weak-issuer", "weak-root", None, id="no: OpenSSL root, RSA-1024"),
])
def test_who_is_believed(fetch, believed, chain, openssl, platform):
    assert fetch(chain, openssl, platform) == believed


@mark.filterwarnings("ignore:ssl.TLSVersion.TLSv1_1")
@mark.parametrize("server", [
    param({"version": ssl.TLSVersion.TLSv1_1}, id="TLS 1.1"),
    param({"version": ssl.TLSVersion.TLSv1_3}, id="TLS 1.3"),
    param({"ciphers": "aNULL:@SECLEVEL=0"}, id="ciphers without certificates"),
])
def test_only_tls_1_2_with_certificates_is_spoken(fetch, server):
    assert not fetch("server issuer", "root", **server)


def test_the_configuration_file_of_openssl_is_obeyed(user, fetch):
    configuration = user.home / "openssl.cnf"  # allows RSA-1024, by the security level 0
    configuration.write_text("openssl_conf = a\n[a]\nssl_conf = b\n[b]\nsystem_default = c\n"
                             "[c]\nCipherString = DEFAULT:@SECLEVEL=0\n")
    user.environment["OPENSSL_CONF"] = str(configuration)
    assert fetch("weak-server weak-issuer", "weak-root")


@mark.parametrize("place", [*BUNDLES, IN_DIRECTORY])
def test_the_platform_trusts_what_a_bundle_or_else_its_directory_holds(fetch, place):
    assert fetch("server issuer", NOBODY, {place: "root"})


@mark.parametrize("first", ["self-signed", "unusable"])
def test_nothing_but_the_first_bundle_counts(fetch, first):
    platform = {BUNDLES[0]: first, BUNDLES[1]: "root", IN_DIRECTORY: "root"}
    assert not fetch("server issuer", NOBODY, platform)
