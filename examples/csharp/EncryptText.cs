// Encrypts a text and decrypts it again.
//
//   tlbimp latchkey.dll /out:Interop.Latchkey.dll /namespace:Latchkey
//   csc /platform:x86 /reference:Interop.Latchkey.dll EncryptText.cs      (x64 with the 64-bit DLL)
//   EncryptText TEXT
//
// Needs the registered DLL of the program's bitness. Not run by this project's tests: they have no .NET Framework.
using System;
using Latchkey;

static class EncryptText
{
    const short Sha1 = 4, TripleDes = 4;

    // The component's objects belong to one thread, which must be single-threaded. Threads of a multithreaded
    // apartment share one error record: there, make one clsMain for the process, keep it alive, and release it last.
    [STAThread]
    static int Main(string[] arguments)
    {
        if (arguments.Length != 1)
        {
            Console.Error.WriteLine("usage: EncryptText TEXT");
            return 2;
        }
        var main = new clsMain();                       // first: makes the error record of this thread
        var api = new clsCryptoAPI();
        var enhanced = true;
        api.set_EnhancedProvider(ref enhanced);         // before the first operation; 3DES needs it

        UsePassword(api, "a secret");
        object text = arguments[0];
        byte[] input = api.StringToByteArray(ref text);
        api.set_InputData(ref input);
        if (!api.Encrypt(Sha1, TripleDes)) return Report(main);

        byte[] ciphertext = api.OutputData;
        Console.WriteLine("ciphertext  " + BitConverter.ToString(ciphertext));

        UsePassword(api, "a secret");
        api.set_InputData(ref ciphertext);
        if (!api.Decrypt(Sha1, TripleDes)) return Report(main);
        byte[] plain = api.OutputData;
        Console.WriteLine("decrypted   " + api.ByteArrayToString(ref plain));
        GC.KeepAlive(main);                             // without a clsMain, operations raise 91
        return 0;
    }

    // The property erases the array that it is given.
    static void UsePassword(clsCryptoAPI api, string password)
    {
        object text = password;
        byte[] secret = api.StringToByteArray(ref text);
        api.set_Password(ref secret);
    }

    // No operation throws: its result tells that it failed, and the record tells why.
    static int Report(clsMain main)
    {
        Console.Error.WriteLine("failed at location {0}: {1}", main.ErrorLocationID, main.AppErrorDescription);
        return 1;
    }
}
