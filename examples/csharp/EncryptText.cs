// Encrypts a text and decrypts it again.
//
//   tlbimp latchkey.dll /out:Interop.Latchkey.dll /namespace:Latchkey
//   csc /platform:x86 /reference:Interop.Latchkey.dll EncryptText.cs      (x64 with the 64-bit DLL)
//   EncryptText TEXT
//
// Needs the registered DLL of the program's bitness. Not run by this project's tests: they have no .NET Framework.
using System;
using System.Runtime.InteropServices;
using Latchkey;

static class EncryptText
{
    const short Hash = (short)LatchkeyHash.latchkeyHashSHA1;
    const short Cipher = (short)LatchkeyCipher.latchkeyCipher3DES;
    const string EndMark = "~lkend~";       // without its digit, see "Storing a ciphertext" in docs/reference.md

    // One for the process, made first, kept alive and released last. All threads of a multi-threaded apartment share
    // one host thread and so one error record, which the release of any clsMain there would take away.
    static clsMain main;

    // The component's objects belong to one thread, which must be in a single-threaded apartment.
    [STAThread]
    static int Main(string[] arguments)
    {
        if (arguments.Length != 1)
        {
            Console.Error.WriteLine("usage: EncryptText TEXT");
            return 2;
        }
        main = new clsMain();
        var api = new clsCryptoAPI();
        try
        {
            var enhanced = true;
            api.set_EnhancedProvider(ref enhanced);     // before the first operation; 3DES needs it

            byte[] ciphertext = Encrypt(api, arguments[0], "a secret");
            Console.WriteLine("ciphertext  " + BitConverter.ToString(ciphertext, 0, ciphertext.Length - 1));
            Console.WriteLine("decrypted   " + Decrypt(api, ciphertext, "a secret"));
            return 0;
        }
        catch (InvalidOperationException failure)
        {
            Console.Error.WriteLine(failure.Message);
            return 1;
        }
        finally
        {
            Marshal.ReleaseComObject(api);
            Marshal.ReleaseComObject(main);
        }
    }

    // The result has one element more than the ciphertext, since InputData ignores the last element of its array. Store
    // the whole array and pass it to Decrypt; a ciphertext from another system needs one more element.
    //
    // InputData loses spaces at the end. The end mark keeps those of the text. Its digit is the first with which the
    // ciphertext does not end in the code of a space.
    static byte[] Encrypt(clsCryptoAPI api, string text, string password)
    {
        UsePassword(api, password);
        for (int digit = 0; digit <= 9; digit++)
        {
            string marked = text + EndMark + digit;
            byte[] bytes = BytesOf(api, marked);
            if (api.ByteArrayToString(ref bytes) != marked)
                throw new InvalidOperationException("a character is not in the system's code page");
            api.set_InputData(ref bytes);
            if (!api.Encrypt(Hash, Cipher)) throw Failure();
            byte[] ciphertext = api.OutputData;
            if (api.ByteArrayToString(ref ciphertext).Length == ciphertext.Length - 1) return ciphertext;
        }
        throw new InvalidOperationException("no ciphertext that can be stored");
    }

    static string Decrypt(clsCryptoAPI api, byte[] ciphertext, string password)
    {
        UsePassword(api, password);
        api.set_InputData(ref ciphertext);
        if (!api.Decrypt(Hash, Cipher)) throw Failure();
        byte[] plain = api.OutputData;
        return WithoutEndMark(api.ByteArrayToString(ref plain));
    }

    // Data without a mark is returned unchanged.
    static string WithoutEndMark(string text)
    {
        int end = text.Length - EndMark.Length - 1;
        bool marked = end >= 0 && string.CompareOrdinal(text, end, EndMark, 0, EndMark.Length) == 0 &&
            "0123456789".IndexOf(text[text.Length - 1]) >= 0;
        return marked ? text.Substring(0, end) : text;
    }

    // The property erases the caller's array.
    static void UsePassword(clsCryptoAPI api, string password)
    {
        byte[] secret = BytesOf(api, password);
        if (api.ByteArrayToString(ref secret).TrimEnd(' ') != password.TrimEnd(' '))
            throw new InvalidOperationException("a character of the password is not in the system's code page");
        api.set_Password(ref secret);
    }

    static byte[] BytesOf(clsCryptoAPI api, string text)
    {
        object value = text;
        return api.StringToByteArray(ref value);
    }

    // No operation throws: its result shows the failure, and the record has the reason.
    static Exception Failure()
    {
        bool runTime = main.ErrorType == (short)LatchkeyErrorType.latchkeyErrorRunTime;
        return new InvalidOperationException(string.Format("failed at location {0}: {1}", main.ErrorLocationID,
            runTime ? main.RTErrorDescription : main.AppErrorDescription));
    }
}
