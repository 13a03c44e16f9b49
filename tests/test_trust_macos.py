import test_trust


class TrustOnMacos(test_trust.Trust):
    """All that is said of trust, and more, on a module that asks stand-ins for macOS for it."""

    def test_a_chain_is_not_trusted_when_macos_cannot_make_an_object(self):
        for kind in "data", "certificate", "array", "trust":
            with self.subTest(refused=kind):
                self.environment["REFUSED"] = kind
                self.assertEqual(self.verdict("leaf issuer", "nowhere",
                                              {test_trust.BUNDLES[0]: "root"}), test_trust.REFUSED)
