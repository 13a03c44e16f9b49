"""Throwaway certificates and a small HTTPS server on a free loopback port, for tests and demo.

Run as a program, with a folder and if need be a port, it makes an authority in the folder,
FOLDER/root.pem, prints its port and serves /downloads/page, with a release block, until it ends.
"""
import argparse
import contextlib
import pathlib
import socket
import ssl
import subprocess
import sys
import threading

PAGE = b"<html><body>\n<!--ReleaseInfo\r\n4.7.2 (2022-06-30)\r\n-->\n</body></html>\n"
NOT_FOUND = b"HTTP/1.0 404 Not Found\r\n\r\n"
OPENSSL_SETTINGS = """
[req]
distinguished_name = dn
[ca]
default_ca = issuing
[issuing]
database = issued.txt
new_certs_dir = .
rand_serial = yes
unique_subject = no
policy = dn
[dn]
commonName = supplied
[authority]
basicConstraints = critical, CA:TRUE
subjectKeyIdentifier = hash
[server]
basicConstraints = CA:FALSE
extendedKeyUsage = serverAuth
"""
VALID = "20200101000000Z", "20991231000000Z"
EXPIRED = "20200101000000Z", "20200102000000Z"


def http_response(body):
    return f"HTTP/1.0 200 OK\r\nContent-Length: {len(body)}\r\n\r\n".encode() + body


def make_certificate(folder, name, issuer=None, kind="server", key="ec:P-256", digest="sha256",
                     validity=VALID):
    """Makes name.key and name.pem in the folder, signed by the issuer of that folder or itself."""
    pathlib.Path(folder, "openssl.cnf").write_text(OPENSSL_SETTINGS)
    pathlib.Path(folder, "issued.txt").touch()

    def openssl(*arguments):
        subprocess.run(["openssl", *arguments], cwd=folder, check=True, capture_output=True)

    algorithm, size = key.split(":")
    option = {"ec": "ec_paramgen_curve", "rsa": "rsa_keygen_bits"}[algorithm]
    openssl("req", "-config", "openssl.cnf", "-newkey", algorithm, "-pkeyopt", f"{option}:{size}",
            "-nodes", "-subj", f"/CN={name}", "-keyout", f"{name}.key", "-out", f"{name}.csr")
    signed_by = (["-cert", f"{issuer}.pem", "-keyfile", f"{issuer}.key"] if issuer else
                 ["-selfsign", "-keyfile", f"{name}.key"])
    not_before, not_after = validity
    openssl("ca", "-batch", "-config", "openssl.cnf", *signed_by, "-in", f"{name}.csr", "-md",
            digest, "-startdate", not_before, "-enddate", not_after, "-extensions", kind,
            "-notext", "-out", f"{name}.pem")


def listen(port=0):
    """A listening socket on loopback; port 0 is any."""
    return socket.create_server(("127.0.0.1", port))


class Server:
    """Answers every request, or those for `path`, with `response` and notes them as they came.

    A response of several parts goes out in as many TLS records. The server sends the certificates
    that are named, its own first, out of those made in the folder.
    """

    def __init__(self, folder, certificates, response=http_response(PAGE),
                 version=ssl.TLSVersion.TLSv1_2, close_notify=True, listener=None, path=""):
        self.response = response
        self.path = path
        self.close_notify = close_notify
        self.requests = []
        self.requested = threading.Event()  # a request is noted
        self.may_answer = threading.Event()  # cleared, the server keeps its client waiting
        self.may_answer.set()
        self.context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        self.context.set_ciphers("DEFAULT:@SECLEVEL=0")
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
        self.requested.set()
        self.may_answer.wait()
        wanted = f"GET {self.path}?".encode(), f"GET {self.path} ".encode()
        found = not self.path or request.startswith(wanted)
        response = self.response if found else NOT_FOUND
        for part in [response] if isinstance(response, bytes) else response:
            stream.sendall(part)
        if self.close_notify:
            stream.unwrap()  # a bare end of the connection would be a truncated stream
        else:
            stream.shutdown(socket.SHUT_WR)
            while stream.recv(4096):
                pass

    def __enter__(self):
        threading.Thread(target=self.serve, daemon=True).start()
        return self

    def __exit__(self, *_):
        self.may_answer.set()
        with contextlib.suppress(OSError):  # macOS knows no shutdown of a listening socket
            self.listener.shutdown(socket.SHUT_RDWR)
        self.listener.close()


def main():
    parser = argparse.ArgumentParser(description="a small HTTPS server for a demonstration")
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("port", type=int, nargs="?", default=0)
    arguments = parser.parse_args()
    try:
        listener = listen(arguments.port)  # before a certificate of another server is replaced
    except (OSError, OverflowError) as error:
        parser.exit(1, f"{parser.prog}: give another port than {arguments.port}: {error}\n")
    arguments.folder.mkdir(parents=True, exist_ok=True)
    make_certificate(arguments.folder, "root", kind="authority")
    make_certificate(arguments.folder, "localhost", issuer="root")
    server = Server(arguments.folder, ["localhost", "root"], listener=listener,
                    path="/downloads/page")
    print(server.port, flush=True)
    server.serve()


if __name__ == "__main__":
    main()
