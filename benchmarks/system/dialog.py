"""Figures of the dialog, on real windows under Wine."""


def figures(quick, keys):
    """The figures among `keys` that are taken here; `quick` takes them roughly."""
    del quick, keys
    return {}
