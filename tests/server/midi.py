"""A MIDI file made for a test."""


def chunk(kind, data):
    return kind + len(data).to_bytes(4, "big") + data


def midi_file(voices):
    """`voices`: pairs of a name and the keys of quarter notes; each gets its own track and channel."""
    tracks = b""
    for channel, (name, keys) in enumerate(voices):
        events = b"\0\xff\3" + bytes([len(name)]) + name.encode("latin-1")
        for key in keys:
            events += bytes([0, 0x90 + channel, key, 80, 96, 0x80 + channel, key, 0])
        tracks += chunk(b"MTrk", events + b"\0\xff\x2f\0")
    return chunk(b"MThd", bytes([0, 1, 0, len(voices), 0, 96])) + tracks
