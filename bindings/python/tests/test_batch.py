"""Many messages in one call."""
import array

import pytest
from hypothesis import given
from hypothesis import strategies as st

import latchkey
from latchkey import Key

DES = Key(b"secret", hash="md5", cipher="des")
RC4 = Key(b"secret", hash="md5", cipher="rc4")
RECORDS = st.lists(st.one_of(st.none(), st.binary(max_size=40)), max_size=30)


def offsets_of(records, code):
    ends = array.array(code, [0])
    for record in records:
        ends.append(ends[-1] + len(record))
    return ends


def records_of(result):
    return [bytes(result.data[start:end]) for start, end in zip(result.offsets, result.offsets[1:])]


@given(records=RECORDS, key=st.sampled_from([DES, RC4]), threads=st.sampled_from([0, 1, 3]))
def test_a_list_is_done_record_by_record(records, key, threads):
    expected = [None if record is None else key.encrypt(record) for record in records]
    assert key.encrypt_many(records, threads=threads) == expected
    assert key.decrypt_many(expected, threads=threads) == records


@given(records=st.lists(st.binary(max_size=40), max_size=30), code=st.sampled_from("ilq"), key=st.sampled_from([DES, RC4]))
def test_a_buffer_with_offsets_is_done_record_by_record(records, code, key):
    made = key.encrypt_many(b"".join(records), offsets_of(records, code))
    assert records_of(made) == [key.encrypt(record) for record in records]
    again = key.decrypt_many(made.data, made.offsets)
    assert records_of(again) == records
    assert again.offsets.format == code
    assert list(again.statuses) == [0] * len(records)


def test_offsets_may_begin_in_the_middle():
    made = DES.encrypt_many([b"one", b"three"])
    result = DES.decrypt_many(b"before" + b"".join(made) + b"after", array.array("i", [6, 14, 22]))
    assert records_of(result) == [b"one", b"three"]


def test_an_iterator_and_a_tuple_are_lists():
    assert RC4.encrypt_many(iter([b"a", None])) == RC4.encrypt_many((b"a", None))


def test_records_are_any_buffers():
    wide = array.array("q", [1, 2])
    kinds = [b"bytes", bytearray(b"array"), memoryview(b"view"), wide, None]
    assert RC4.decrypt_many(RC4.encrypt_many(kinds)) == [b"bytes", b"array", b"view", wide.tobytes(), None]


def test_a_long_list_keeps_its_order():
    records = [None if number % 7 == 3 else b"%d" % number for number in range(30000)]
    made = DES.encrypt_many(records)
    assert DES.decrypt_many(made) == records
    made[20000] = made[25000] = b"damaged"
    with pytest.raises(latchkey.CipherError) as raised:
        DES.decrypt_many(made)
    assert raised.value.index == 20000
    failed = [(index, each.index) for index, each in enumerate(DES.decrypt_many(made, errors="return"))
              if isinstance(each, Exception)]
    assert failed == [(20000, 20000), (25000, 25000)]
    made[29000] = "text"
    with pytest.raises(TypeError, match="^record 29000: "):
        DES.decrypt_many(made, errors="null")


def test_the_first_failure_is_raised_with_its_index():
    records = [DES.encrypt(b"one"), None, b"damaged", b""]
    with pytest.raises(latchkey.CipherError, match="^record 2: ") as raised:
        DES.decrypt_many(records)
    assert (raised.value.index, raised.value.location) == (2, 717)


def test_failures_are_none_on_request():
    good = DES.encrypt(b"one")
    assert DES.decrypt_many([b"damaged", None, good, b""], errors="null") == [None, None, b"one", None]


def test_failures_are_returned_on_request():
    good = DES.encrypt(b"one")
    first, null, second, last = DES.decrypt_many([b"damaged", None, good, b"1234567812345678"], errors="return")
    assert (null, second) == (None, b"one")
    for error, index in ((first, 0), (last, 3)):
        assert isinstance(error, latchkey.CipherError)
        assert (error.index, error.location, error.__traceback__) == (index, 717, None)


def test_a_failed_record_of_a_buffer_is_empty_with_its_status():
    records = [DES.encrypt(b"one"), b"damaged", DES.encrypt(b"three")]
    data, offsets = b"".join(records), offsets_of(records, "q")
    result = DES.decrypt_many(data, offsets, errors="null")
    assert records_of(result) == [b"one", b"", b"three"]
    assert list(result.statuses) == [0, latchkey.Status.CIPHER_FAILED, 0]
    with pytest.raises(latchkey.CipherError) as raised:
        DES.decrypt_many(data, offsets)
    assert raised.value.index == 1


def test_results_are_views_that_keep_their_memory():
    result = RC4.encrypt_many(b"abcdef", array.array("i", [0, 6]))
    data, expected = result.data, RC4.encrypt(b"abcdef")
    del result
    assert data == expected
    assert data.obj is not None


@pytest.mark.parametrize("offsets", [[0, 7], [-1, 3], [3, 0], [0, 5, 2], [0, 1 << 30]])
def test_offsets_that_leave_the_buffer_or_descend_are_refused(offsets):
    with pytest.raises(latchkey.ArgumentError) as raised:
        RC4.encrypt_many(b"abcdef", array.array("i", offsets))
    assert raised.value.status == latchkey.Status.BAD_ARGUMENT


@pytest.mark.parametrize("offsets", [b"\0\0\0\0", array.array("I", [0]), array.array("h", [0]), array.array("d", [0]),
                                     memoryview(bytes(16)).cast("i", (2, 2)), [0, 6], 5])
def test_offsets_of_another_type_are_a_type_error(offsets):
    with pytest.raises(TypeError):
        RC4.encrypt_many(b"abcdef", offsets)


def test_no_offset_at_all_is_a_value_error():
    with pytest.raises(ValueError, match="one more than the number of records"):
        RC4.encrypt_many(b"", array.array("i"))


@pytest.mark.parametrize("records", [b"bytes", bytearray(b"array"), memoryview(b"view"), "text", 5, None])
def test_one_buffer_without_offsets_is_a_type_error(records):
    with pytest.raises(TypeError):
        RC4.encrypt_many(records)


@pytest.mark.parametrize("wrong", ["text", 5, 1.5, [b""]])
def test_a_record_of_the_wrong_type_is_named(wrong):
    with pytest.raises(TypeError, match=f"^record 2: bytes or None are required, not {type(wrong).__name__}$"):
        RC4.encrypt_many([b"", None, wrong])


@pytest.mark.parametrize("wrong", [{"errors": "ignore"}, {"threads": -1}, {"threads": 1 << 32}])
def test_an_unknown_option_is_a_value_error(wrong):
    for arguments in (([b"a"],), (b"a", array.array("i", [0, 1]))):
        with pytest.raises(ValueError):
            RC4.encrypt_many(*arguments, **wrong)


def test_a_buffer_cannot_return_exceptions():
    with pytest.raises(ValueError, match="errors"):
        RC4.encrypt_many(b"a", array.array("i", [0, 1]), errors="return")
