#!/usr/bin/python3
"""Keeps a copy of a device's OpenConfig model, fed by gNMI alone.

    collector.py HOST:PORT [PATH]...

Subscribes to the paths (the whole model unless some are given) and prints each change as a line:
"+ PATH = VALUE" for an update, "- PATH" for a deletion. It needs Debian's python3-grpcio,
python3-protobuf and protobuf-compiler.

A connection that ends begins anew after a second. What the device has then is sent as at the start;
what the copy has beyond that was removed meanwhile, and goes when the device says that it is in step
(sync_response).
"""

import pathlib, re, subprocess, sys, tempfile, time

import grpc

PROTOS = pathlib.Path(__file__).resolve().parents[2] / "gnmi" / "proto"
with tempfile.TemporaryDirectory() as folder:
    files = sorted(PROTOS.glob("*.proto"))
    subprocess.run(["protoc", f"-I{PROTOS}", f"--python_out={folder}", *files], check=True)
    sys.path.insert(0, folder)
    import gnmi_pb2 as gnmi


def path_of(text):
    """The path that is written as /qos/queues/queue[name=voice]/config."""
    path = gnmi.Path()
    for name, keys in re.findall(r"/([^/\[]+)((?:\[(?:[^\]\\]|\\.)*\])*)", text):
        key = re.findall(r"\[([^=\]]+)=((?:[^\]\\]|\\.)*)\]", keys)
        path.elem.add(name=name, key={k: re.sub(r"\\(.)", r"\1", v) for k, v in key})
    return path


def text_of(path):
    def escaped(value):
        return re.sub(r"([\]\\])", r"\\\1", value)

    return "".join(
        "/" + elem.name + "".join(f"[{k}={escaped(v)}]" for k, v in sorted(elem.key.items()))
        for elem in path.elem
    )


def apply(notification, copy, fresh):
    """Deletions first: what a notification deletes and brings is there behind it."""
    for path in map(text_of, notification.delete):
        for leaf in [leaf for leaf in copy if leaf == path or leaf.startswith((path + "/", path + "["))]:
            del copy[leaf]
        print("-", path, flush=True)
    for update in notification.update:
        leaf, value = text_of(update.path), update.val.json_ietf_val.decode()
        if copy.get(leaf) != value:
            print("+", leaf, "=", value, flush=True)
        copy[leaf] = value
        fresh.add(leaf)


def follow(address, paths, copy):
    subscriptions = [gnmi.Subscription(path=path_of(p), mode=gnmi.ON_CHANGE) for p in paths]
    wish = gnmi.SubscriptionList(subscription=subscriptions, encoding=gnmi.JSON_IETF)
    fresh = set()
    with grpc.insecure_channel(address) as channel:
        subscribe = channel.stream_stream(
            "/gnmi.gNMI/Subscribe",
            request_serializer=gnmi.SubscribeRequest.SerializeToString,
            response_deserializer=gnmi.SubscribeResponse.FromString,
        )
        for response in subscribe(iter([gnmi.SubscribeRequest(subscribe=wish)])):
            apply(response.update, copy, fresh)
            if response.sync_response:
                for leaf in copy.keys() - fresh:
                    del copy[leaf]
                    print("-", leaf, flush=True)
                print(f"in step with {address}: {len(copy)} leaves", flush=True)


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    model = {}
    while True:
        try:
            follow(sys.argv[1], sys.argv[2:] or ["/"], model)
        except grpc.RpcError as error:
            print(f"{error.code().name}: {error.details()}", file=sys.stderr)
            if error.code() not in (grpc.StatusCode.UNAVAILABLE, grpc.StatusCode.CANCELLED):
                sys.exit(1)
        time.sleep(1)
