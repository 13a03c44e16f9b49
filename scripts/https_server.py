"""Throwaway certificates and a small HTTPS server on a free loopback port, for tests and demo.

Run as a program, with a folder and if need be a port, it makes an authority in the folder,
FOLDER/root.pem, prints its port and serves /downloads/page, with a release block, until it ends.
"""
import argparse
import contextlib
import datetime
import pathlib
import socket
import ssl
import threading

from cryptography import x509
from cryptography.hazmat.primitives import hashes
from cryptography.hazmat.primitives.asymmetric import ec, rsa
from cryptography.hazmat.primitives.serialization import (
    Encoding, NoEncryption, PrivateFormat, load_pem_private_key)
from cryptography.x509.oid import ExtendedKeyUsageOID, NameOID

PAGE = b"<html><body>\n<!--ReleaseInfo\r\n4.7.2 (2022-06-30)\r\n-->\n</body></html>\n"
NOT_FOUND = b"HTTP/1.0 404 Not Found\r\n\r\n"
VALID = datetime.datetime(2020, 1, 1), datetime.datetime(2099, 12, 31)
EXPIRED = datetime.datetime(2020, 1, 1), datetime.datetime(2020, 1, 2)
CUT = object()  # a part of a response, see Server


def http_response(body):
    return f"HTTP/1.0 200 OK\r\nContent-Length: {len(body)}\r\n\r\n".encode() + body


def listen(port=0):
    """A listening socket on loopback; port 0 is any."""
    return socket.create_server(("127.0.0.1", port))


def new_key(rsa_bits):
    """A private key as PEM: RSA of so many bits, or an elliptic curve's for None."""
    key = (rsa.generate_private_key(public_exponent=65537, key_size=rsa_bits) if rsa_bits else
           ec.generate_private_key(ec.SECP256R1()))
    return key.private_bytes(Encoding.PEM, PrivateFormat.PKCS8, NoEncryption())


def make_certificate(folder, name, issuer=None, authority=False, rsa_bits=None, validity=VALID,
                     subject=None):
    """Makes name.pem in the folder, signed with the key of the issuer or its own.

    The subject, by default the name, is what the certificate calls itself and owns the key,
    subject.key, which is made unless it is there already.
    """
    folder = pathlib.Path(folder)
    folder.mkdir(parents=True, exist_ok=True)
    subject = subject or name
    issuer = issuer or subject
    if not (folder / f"{subject}.key").exists():
        (folder / f"{subject}.key").write_bytes(new_key(rsa_bits))
    keys, names = {}, {}
    for who in subject, issuer:
        keys[who] = load_pem_private_key((folder / f"{who}.key").read_bytes(), password=None)
        names[who] = x509.Name([x509.NameAttribute(NameOID.COMMON_NAME, who)])
    builder = x509.CertificateBuilder(names[issuer], names[subject], keys[subject].public_key(),
                                      x509.random_serial_number(), *validity)
    builder = builder.add_extension(x509.BasicConstraints(authority, None), critical=True)
    builder = builder.add_extension(x509.ExtendedKeyUsage([ExtendedKeyUsageOID.SERVER_AUTH]), False)
    certificate = builder.sign(keys[issuer], hashes.SHA256())
    (folder / f"{name}.pem").write_bytes(certificate.public_bytes(Encoding.PEM))


def make_chain(folder, prefix="", root_bits=None):
    """Makes the authority "root" with such a key, "issuer", signed by it, and "server" by that."""
    make_certificate(folder, f"{prefix}root", authority=True, rsa_bits=root_bits)
    # Has the longest certificate of the three, as only it holds an RSA key of 2048 bits.
    make_certificate(folder, f"{prefix}issuer", f"{prefix}root", authority=True, rsa_bits=2048)
    make_certificate(folder, f"{prefix}server", f"{prefix}issuer")


class Server:
    """Answers every request, or those for `path`, with `response` and notes them as they came.

    A response of several parts goes out in as many TLS records; the part CUT ends the connection as
    a broken line would. The server sends the certificates that are named, its own first, out of
    those made in the folder.
    """

    def __init__(self, folder, certificates, response=http_response(PAGE), listener=None, path="",
                 version=ssl.TLSVersion.TLSv1_2, ciphers="DEFAULT:@SECLEVEL=0"):
        self.response = response
        self.path = path
        self.requests = []
        self.context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        self.context.set_ciphers(ciphers)
        self.context.minimum_version = self.context.maximum_version = version
        chain = pathlib.Path(folder, "chain.pem")
        chain.write_text("".join(chain.with_name(f"{name}.pem").read_text()
                                 for name in certificates))
        self.context.load_cert_chain(chain, chain.with_name(f"{certificates[0]}.key"))
        self.server_name = None
        self.context.sni_callback = lambda _, name, __: setattr(self, "server_name", name)
        self.listener = listener or listen()
        self.port = str(self.listener.getsockname()[1])

    def serve(self):
        while True:
            try:
                connection, _ = self.listener.accept()
            except OSError:
                return  # closed
            # A client that refuses the server just goes away.
            with contextlib.suppress(OSError), connection:
                with self.context.wrap_socket(connection, server_side=True) as stream:
                    self.answer(stream)

    def answer(self, stream):
        request = b""
        while not request.endswith(b"\r\n\r\n"):
            received = stream.recv(4096)
            if not received:
                return
            request += received
        self.requests.append(request)
        wanted = f"GET {self.path}?".encode(), f"GET {self.path} ".encode()
        found = not self.path or request.startswith(wanted)
        response = self.response if found else NOT_FOUND
        for part in [response] if isinstance(response, bytes) else response:
            if part is CUT:
                stream.shutdown(socket.SHUT_WR)
                while stream.recv(4096):
                    pass
                return
            stream.sendall(part)
        stream.unwrap()  # sends close_notify

    def __enter__(self):
        threading.Thread(target=self.serve, daemon=True).start()
        return self

    def __exit__(self, *_):
        with contextlib.suppress(OSError):  # macOS knows no shutdown of a listening socket
            self.listener.shutdown(socket.SHUT_RDWR)
        self.listener.close()


def main():
    parser = argparse.ArgumentParser(description="a small HTTPS server for a demonstration")
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("port", type=int, nargs="?", default=0)
    arguments = parser.parse_args()
    try:
        listener = listen(arguments.port)  # fails before the files of a running server are replaced
    except (OSError, OverflowError) as error:
        parser.exit(1, f"{parser.prog}: give another port than {arguments.port}: {error}\n")
    make_certificate(arguments.folder, "root", authority=True)
    make_certificate(arguments.folder, "localhost", "root")  # curl compares the name
    server = Server(arguments.folder, ["localhost", "root"], listener=listener,
                    path="/downloads/page")
    print(server.port, flush=True)
    server.serve()


if __name__ == "__main__":
    main()
