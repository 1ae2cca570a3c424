"""Threads, processes and the interpreter's lock."""
import contextlib
import os
import sys
import threading
from concurrent.futures import ThreadPoolExecutor

import pytest

import latchkey
from latchkey import Key

KEY = Key(b"secret", hash="sha1", cipher="3des")
LARGE = bytes(1 << 20)
MANY = [b"a record of 24 bytes, so"] * 20000
ENOUGH_CALLS = 1000


@contextlib.contextmanager
def threads_that_only_yield():
    """Threads give up the interpreter's lock only when they wait or call a function that releases it."""
    interval = sys.getswitchinterval()
    sys.setswitchinterval(3600)
    try:
        yield
    finally:
        sys.setswitchinterval(interval)


def runs_during(operation):
    """Whether another thread runs while one repeats the operation."""
    start, ran = threading.Lock(), threading.Event()

    def run():
        with start:
            ran.set()

    with threads_that_only_yield():
        start.acquire()
        thread = threading.Thread(target=run)
        thread.start()  # returns once the thread waits for `start`
        start.release()
        for _ in range(ENOUGH_CALLS):
            if ran.is_set():
                break
            operation()
        result = ran.is_set()
    thread.join()
    return result


@pytest.mark.parametrize("operation", [
    lambda: KEY.decrypt_many(MANY, errors="null", threads=1), lambda: KEY.encrypt(LARGE),
    lambda: KEY.encryptor().update(LARGE), lambda: latchkey.digest(LARGE, "md2")],
    ids=["decrypt_many", "encrypt", "update", "digest"])
def test_another_thread_runs_during_a_call(operation):
    assert runs_during(operation)


def test_no_other_thread_runs_during_python_code():
    assert not runs_during(lambda: sum(range(1000)))


def test_threads_share_a_key():
    texts = [bytes([number]) * number for number in range(200)]
    with ThreadPoolExecutor(8) as pool:
        ciphertexts = list(pool.map(KEY.encrypt, texts))
        assert list(pool.map(KEY.decrypt, ciphertexts)) == texts
        assert all(made == ciphertexts for made in pool.map(KEY.encrypt_many, [texts] * 8))


def test_closing_a_key_lets_calls_of_other_threads_end():
    keys = [Key(b"secret", hash="sha1", cipher="3des") for _ in range(50)]
    expected = KEY.encrypt(LARGE[:65536])

    def use(key):
        with contextlib.suppress(ValueError):  # closed before
            assert key.encrypt(LARGE[:65536]) == expected

    with ThreadPoolExecutor(4) as pool:
        calls = [pool.submit(use, key) for key in keys]
        for key in keys:
            key.close()
        for call in calls:
            call.result()


def test_threads_take_turns_with_a_stream_and_a_hasher():
    stream, hasher = KEY.encryptor(), latchkey.Hasher("sha1")
    with ThreadPoolExecutor(8) as pool:
        made = sum(map(len, pool.map(stream.update, [b"12345678"] * 1000)))
        list(pool.map(hasher.update, [b"12345678"] * 1000))
    assert made + len(stream.finish()) == 8008
    assert hasher.digest() == latchkey.digest(b"12345678" * 1000, "sha1")


def test_a_key_serves_both_processes_after_a_fork():
    ciphertext = KEY.encrypt(b"attack at dawn")
    child = os.fork()
    if child == 0:
        right = False
        with contextlib.suppress(Exception):
            right = KEY.decrypt(ciphertext) == b"attack at dawn" and KEY.encrypt_many(MANY) is not None
        os._exit(0 if right else 1)
    assert os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]) == 0
    assert KEY.decrypt(ciphertext) == b"attack at dawn"
