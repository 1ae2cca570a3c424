// Decrypts through the C interface of the Linux library (cgo): one message, a damaged one, and a batch.
// examples/README.md shows how to run it.
package main

/*
#cgo LDFLAGS: -llatchkey
#include <latchkey.h>

// Go may pass C pointers to its memory, but not structs in its memory that contain such pointers.
static int32_t decrypt_records(const latchkey_key* key, size_t count, const int64_t* starts, const uint8_t* input,
                               size_t length, int64_t* ends, uint8_t* output, int32_t* statuses) {
	latchkey_records records = {sizeof records, sizeof *starts, count, starts, input, length};
	latchkey_results results = {sizeof results, sizeof *ends, ends, output, length, statuses, 0};
	return latchkey_decrypt_records(key, &records, 0, &results, NULL);
}
*/
import "C"

import (
	"encoding/hex"
	"fmt"
	"log"
)

// Failure describes why an operation failed, with the component's numbers.
type Failure struct {
	Text             string
	Location, Number int
}

func (f *Failure) Error() string {
	return fmt.Sprintf("%s (location %d, number %d)", f.Text, f.Location, f.Number)
}

// check returns nil or a *Failure.
func check(status C.int32_t, failure *C.latchkey_failure) error {
	if status == C.LATCHKEY_OK {
		return nil
	}
	return &Failure{C.GoString(&failure.text[0]), int(failure.location), int(failure.number)}
}

func newFailure() C.latchkey_failure {
	return C.latchkey_failure{size: C.sizeof_latchkey_failure}
}

// pointer returns the address of the first byte, or nil.
func pointer(data []byte) *C.uint8_t {
	if len(data) == 0 {
		return nil
	}
	return (*C.uint8_t)(&data[0])
}

// Key is a key that any number of goroutines may use at the same time.
type Key struct{ key *C.latchkey_key }

func OpenKey(hash, cipher, bits int, password []byte) (*Key, error) {
	settings := C.latchkey_settings{size: C.sizeof_latchkey_settings, hash: C.int32_t(hash), cipher: C.int32_t(cipher),
		key_bits: C.uint32_t(bits)}
	failure := newFailure()
	var key *C.latchkey_key
	status := C.latchkey_key_open(&settings, pointer(password), C.size_t(len(password)), &key, &failure)
	if err := check(status, &failure); err != nil {
		return nil, err
	}
	return &Key{key}, nil
}

func (k *Key) Close() {
	C.latchkey_key_close(k.key)
	k.key = nil
}

func (k *Key) Decrypt(ciphertext []byte) ([]byte, error) {
	plaintext := make([]byte, len(ciphertext)) // never longer than the ciphertext
	length := C.size_t(len(plaintext))
	failure := newFailure()
	status := C.latchkey_decrypt(k.key, pointer(ciphertext), C.size_t(len(ciphertext)), pointer(plaintext), &length,
		&failure)
	if err := check(status, &failure); err != nil {
		return nil, err
	}
	return plaintext[:length], nil
}

// StatusError is the status of a record that failed.
type StatusError C.int32_t

func (s StatusError) Error() string {
	return C.GoString(C.latchkey_status_text(C.int32_t(s)))
}

// Result is a record's plaintext, or the reason why it failed.
type Result struct {
	Plaintext []byte
	Err       error
}

// DecryptAll decrypts all records in one call, on all processors. A record that fails has its own error.
func (k *Key) DecryptAll(ciphertexts [][]byte) ([]Result, error) {
	count := len(ciphertexts)
	starts, ends := make([]C.int64_t, count+1), make([]C.int64_t, count+1)
	var input []byte
	for i, ciphertext := range ciphertexts {
		input = append(input, ciphertext...)
		starts[i+1] = C.int64_t(len(input))
	}
	output := make([]byte, len(input))
	statuses := make([]C.int32_t, count+1)
	status := C.decrypt_records(k.key, C.size_t(count), &starts[0], pointer(input), C.size_t(len(input)), &ends[0],
		pointer(output), &statuses[0])
	if status != C.LATCHKEY_OK {
		return nil, StatusError(status)
	}
	results := make([]Result, count)
	for i := range results {
		results[i].Plaintext = output[ends[i]:ends[i+1]]
		if statuses[i] != C.LATCHKEY_OK {
			results[i].Err = StatusError(statuses[i])
		}
	}
	return results, nil
}

func fromHex(text string) []byte {
	data, err := hex.DecodeString(text)
	if err != nil {
		log.Fatal(err)
	}
	return data
}

func main() {
	message, damaged := fromHex("DC3D962329DD1B2F"), fromHex("DC3D96")
	second := fromHex("21C1EF99E2B02675B4C30F9D98F974F6")

	key, err := OpenKey(C.LATCHKEY_MD5, C.LATCHKEY_RC2, 80, []byte("PNEMAIL"))
	if err != nil {
		log.Fatal(err)
	}
	defer key.Close()

	text, err := key.Decrypt(message)
	if err != nil {
		log.Panic(err)
	}
	fmt.Printf("text     %s\n", text)
	if _, err := key.Decrypt(damaged); err != nil {
		fmt.Println("failure ", err)
	}
	results, err := key.DecryptAll([][]byte{message, damaged, second})
	if err != nil {
		log.Panic(err)
	}
	for _, result := range results {
		if result.Err != nil {
			fmt.Println("record  ", result.Err)
		} else {
			fmt.Printf("record   %s\n", result.Plaintext)
		}
	}
}
