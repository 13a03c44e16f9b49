import test_trust


class TrustOnMacos(test_trust.Trust):
    """All that is said of trust, and more, on a module that asks macos/frameworks.cpp for it."""

    def test_a_chain_is_not_trusted_when_macos_cannot_make_an_object(self):
        for kind in "data", "certificate", "array", "trust":
            with self.subTest(refused=kind):
                self.environment["REFUSED"] = kind
                errors = self.fetch("leaf issuer", etc={test_trust.DEBIAN_BUNDLE: "root"})
                self.assertEqual(errors[:len(test_trust.REFUSED)], test_trust.REFUSED)
