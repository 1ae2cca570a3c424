// Decrypts through the C interface of the Linux library (koffi): one message, a damaged one, and a batch.
// examples/README.md shows how to run it.
'use strict';

const koffi = require('koffi');

// The declarations of latchkey.h.
const MD5 = 1;
const RC2 = 2;

const Settings = koffi.struct('latchkey_settings', {
  size: 'uint32_t', flags: 'uint32_t', hash: 'int32_t', cipher: 'int32_t', provider: 'int32_t',
  key_bits: 'uint32_t', rc2_effective_bits: 'uint32_t',
});
const Failure = koffi.struct('latchkey_failure', {
  size: 'uint32_t', status: 'int32_t', type: 'int32_t', location: 'int32_t', number: 'int32_t',
  text: koffi.array('char', 76),
});
const Records = koffi.struct('latchkey_records', {
  size: 'uint32_t', offset_size: 'uint32_t', count: 'size_t', offsets: 'void *', data: 'void *',
  data_length: 'size_t',
});
const Results = koffi.struct('latchkey_results', {
  size: 'uint32_t', offset_size: 'uint32_t', offsets: 'void *', data: 'void *', data_length: 'size_t',
  statuses: 'void *', failed: 'size_t',
});
koffi.opaque('latchkey_key');

const library = koffi.load('liblatchkey.so.1');
const keyOpen = library.func(`int32_t latchkey_key_open(const latchkey_settings *settings, const uint8_t *password,
  size_t password_length, _Out_ latchkey_key **key, _Inout_ latchkey_failure *failure)`);
const keyClose = library.func('int32_t latchkey_key_close(latchkey_key *key)');
const decrypt = library.func(`int32_t latchkey_decrypt(const latchkey_key *key, const uint8_t *input,
  size_t input_length, _Out_ uint8_t *output, _Inout_ size_t *output_length, _Inout_ latchkey_failure *failure)`);
const decryptRecords = library.func(`int32_t latchkey_decrypt_records(const latchkey_key *key,
  const latchkey_records *records, uint32_t threads, const latchkey_results *results, latchkey_failure *failure)`);
const statusText = library.func('const char *latchkey_status_text(int32_t status)');

class LatchkeyError extends Error {
  constructor(failure) {
    super(`${failure.text} (location ${failure.location}, number ${failure.number})`);
  }
}

// Calls a function whose last argument is a failure.
function call(operation, ...operands) {
  const failure = { size: koffi.sizeof(Failure), status: 0, type: 0, location: 0, number: 0, text: '' };
  if (operation(...operands, failure) !== 0) throw new LatchkeyError(failure);
}

class Key {
  #key;

  constructor(settings, password) {
    const all = { size: koffi.sizeof(Settings), flags: 0, hash: 0, cipher: 0, provider: 0, key_bits: 0,
                  rc2_effective_bits: 0, ...settings };
    const opened = [null];
    call(keyOpen, all, password, password.length, opened);
    this.#key = opened[0];
  }

  close() {
    keyClose(this.#key);
    this.#key = null;
  }

  decrypt(ciphertext) {
    const plaintext = Buffer.alloc(ciphertext.length);  // never longer than the ciphertext
    const length = [plaintext.length];
    call(decrypt, this.#key, ciphertext, ciphertext.length, plaintext, length);
    return plaintext.subarray(0, length[0]);
  }

  // One call for all records, on all processors. A record that fails has its own status and an empty result.
  decryptAll(ciphertexts) {
    const starts = new BigInt64Array(ciphertexts.length + 1);
    ciphertexts.forEach((bytes, i) => { starts[i + 1] = starts[i] + BigInt(bytes.length); });
    const input = Buffer.concat(ciphertexts);
    const ends = new BigInt64Array(starts.length);
    const output = Buffer.alloc(input.length);
    const statuses = new Int32Array(ciphertexts.length);
    const status = decryptRecords(this.#key,
      { size: koffi.sizeof(Records), offset_size: 8, count: ciphertexts.length, offsets: starts, data: input,
        data_length: input.length },
      0,
      { size: koffi.sizeof(Results), offset_size: 8, offsets: ends, data: output, data_length: output.length,
        statuses, failed: 0 },
      null);
    if (status !== 0) throw new Error(statusText(status));
    return ciphertexts.map((_, i) => (
      { status: statuses[i], plaintext: output.subarray(Number(ends[i]), Number(ends[i + 1])) }));
  }
}

const message = Buffer.from('DC3D962329DD1B2F', 'hex');
const damaged = Buffer.from('DC3D96', 'hex');
const second = Buffer.from('21C1EF99E2B02675B4C30F9D98F974F6', 'hex');

const key = new Key({ hash: MD5, cipher: RC2, key_bits: 80 }, Buffer.from('PNEMAIL'));
try {
  console.log(`text     ${key.decrypt(message)}`);
  try {
    key.decrypt(damaged);
  } catch (failure) {
    if (!(failure instanceof LatchkeyError)) throw failure;
    console.log(`failure  ${failure.message}`);
  }
  for (const { status, plaintext } of key.decryptAll([message, damaged, second])) {
    console.log(`record   ${status === 0 ? plaintext : statusText(status)}`);
  }
} finally {
  key.close();
}
