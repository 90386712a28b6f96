// SPDX-License-Identifier: Apache-2.0
using System;
using System.IO;
using System.Runtime.InteropServices;
using System.Text;

// What a conversion needs of lumoxa/lmx.h, which tells what each function does.
static class Lumoxa
{
    public const int AbiVersion = 1;
    public const uint RelativeColorimetric = 1;
    public const uint DeviceToPcs = 1;
    public const uint PcsToDevice = 2;
    public const int CombineColorimetric = 1;
    public const int Samples8 = 1;

    const string Library = "lumoxa";  // lumoxa.dll on Windows, liblumoxa.so on Linux

    [DllImport(Library)]
    public static extern int lmx_abi_version();

    [DllImport(Library, CharSet = CharSet.Ansi)]
    public static extern int lmx_error_text(int code, StringBuilder buffer, int size);

    [DllImport(Library)]
    public static extern int lmx_profile_load(byte[] image, ulong length, out IntPtr profile);

    [DllImport(Library)]
    public static extern void lmx_profile_free(IntPtr profile);

    [DllImport(Library)]
    public static extern int lmx_transform_get(IntPtr profile, uint intent, uint direction,
                                               out IntPtr transform);

    [DllImport(Library)]
    public static extern void lmx_transform_free(IntPtr transform);

    [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
    public delegate int Progress(int state, int percent, IntPtr user);

    [DllImport(Library)]
    public static extern int lmx_combine(int count, IntPtr[] chain, int options,
                                         out IntPtr transform, ref int failingLink,
                                         Progress progress, IntPtr user);

    [DllImport(Library)]
    public static extern int lmx_evaluate_packed(IntPtr transform, byte[] source, int sourceType,
                                                 [Out] byte[] destination, int destinationType,
                                                 int pixels);

    public static void Require(int code)
    {
        if (code == 0) return;
        var text = new StringBuilder(100);
        lmx_error_text(code, text, text.Capacity);
        throw new InvalidOperationException(text.ToString());
    }
}

static class Example
{
    // The transform of a profile file for relative colorimetry. It outlives the profile.
    static IntPtr TransformOf(string path, uint direction)
    {
        byte[] bytes = File.ReadAllBytes(path);
        IntPtr profile, transform;
        Lumoxa.Require(Lumoxa.lmx_profile_load(bytes, (ulong)bytes.Length, out profile));
        int code = Lumoxa.lmx_transform_get(profile, Lumoxa.RelativeColorimetric, direction,
                                            out transform);
        Lumoxa.lmx_profile_free(profile);
        Lumoxa.Require(code);
        return transform;
    }

    // Example RGB-PROFILE CMYK-PROFILE: prints the inks, 0..255, of a full red pixel.
    static int Main(string[] arguments)
    {
        if (arguments.Length != 2 || Lumoxa.lmx_abi_version() != Lumoxa.AbiVersion) return 2;
        var chain = new IntPtr[2];
        IntPtr toPress = IntPtr.Zero;
        try
        {
            chain[0] = TransformOf(arguments[0], Lumoxa.DeviceToPcs);
            chain[1] = TransformOf(arguments[1], Lumoxa.PcsToDevice);
            int failingLink = 0;
            Lumoxa.Require(Lumoxa.lmx_combine(2, chain, Lumoxa.CombineColorimetric, out toPress,
                                              ref failingLink, null, IntPtr.Zero));
            byte[] rgb = { 255, 0, 0 };
            var cmyk = new byte[4];
            Lumoxa.Require(Lumoxa.lmx_evaluate_packed(toPress, rgb, Lumoxa.Samples8, cmyk,
                                                      Lumoxa.Samples8, 1));
            Console.WriteLine("{0} {1} {2} {3}", cmyk[0], cmyk[1], cmyk[2], cmyk[3]);
            return 0;
        }
        catch (Exception fault)
        {
            Console.Error.WriteLine(fault.Message);
            return 1;
        }
        finally
        {
            Lumoxa.lmx_transform_free(toPress);
            foreach (IntPtr transform in chain) Lumoxa.lmx_transform_free(transform);
        }
    }
}
